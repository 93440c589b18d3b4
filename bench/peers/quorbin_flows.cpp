#include "peer_flows.h"

namespace {

template <class Methods>
Methods without(Methods methods, const char* start) {
    Methods kept;
    for (auto& method : methods)
        if (method.name.rfind(start, 0) != 0) kept.push_back(method);
    return kept;
}

}  // namespace

int main() {
    measurePeer(accuracy::libraryDistances<FullLevelSet2D>(),
                without(accuracy::libraryMotions<FullLevelSet2D>(), "steps"));
    measurePeer(accuracy::libraryDistances<FullLevelSet3D>(),
                without(accuracy::libraryMotions<FullLevelSet3D>(), "steps"));
}
