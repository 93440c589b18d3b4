#pragma once

#include <cmath>
#include <cstdio>
#include <string>
#include <type_traits>

namespace accuracy {

/// A figure with what it was measured on: one JSON object, printed as a line when it goes out of scope.
class Line {
 public:
    explicit Line(const std::string& flow) : text_("{\"flow\": \"" + flow + '"') {}
    Line(const Line&) = delete;
    Line& operator=(const Line&) = delete;
    ~Line() {
        std::printf("%s}\n", text_.c_str());
        std::fflush(stdout);
    }

    Line& add(const char* key, const std::string& value) { return append(key, '"' + value + '"'); }

    template <class Number, class = std::enable_if_t<std::is_arithmetic_v<Number>>>
    Line& add(const char* key, Number number) {
        const double value = static_cast<double>(number);
        char digits[32] = "null";  // JSON knows neither infinity nor not-a-number
        if (std::isfinite(value)) std::snprintf(digits, sizeof digits, "%.9g", value);
        return append(key, digits);
    }

 private:
    Line& append(const char* key, const std::string& value) {
        text_ += std::string(", \"") + key + "\": " + value;
        return *this;
    }

    std::string text_;
};

}  // namespace accuracy
