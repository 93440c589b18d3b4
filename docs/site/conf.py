"""The site: read by Sphinx, which scripts/docs runs."""

from __future__ import annotations

import re
from pathlib import Path

from sphinx.errors import ExtensionError

import quorbin

ROOT = Path(__file__).parents[2]
SITE = ROOT / "docs" / "site"

project = "quorbin"
project_copyright = "the authors of quorbin"
version = release = quorbin.__version__
html_title = f"quorbin {version}"

extensions = [
    "myst_parser",
    "sphinx.ext.autodoc",
    "sphinx.ext.autosummary",
    "numpydoc",
    "breathe",
    "sphinx_copybutton",
    "sphinx_gallery.gen_gallery",
]
source_suffix = {".rst": "restructuredtext", ".md": "markdown"}
templates_path = ["_templates"]
exclude_patterns = ["generated/gallery/*.ipynb", "generated/gallery/*.py"]
default_role = "py:obj"
highlight_language = "none"
nitpicky = True
# The C++ pages name types of the standard library, which have no page here.
nitpick_ignore_regex = [("cpp:.*", ".*")]
suppress_warnings = ["duplicate_declaration.cpp"]  # every header opens namespace quorbin again

myst_enable_extensions = ["attrs_inline"]
myst_heading_anchors = 4

autosummary_generate = True
autodoc_typehints = "none"
autodoc_member_order = "bysource"
numpydoc_show_class_members = False

breathe_projects = {"quorbin": str(ROOT / "build" / "doxygen" / "xml")}
breathe_default_project = "quorbin"
breathe_show_include = False
breathe_default_members = ("members", "undoc-members")
cpp_id_attributes = ["QUORBIN_EXPORT"]

sphinx_gallery_conf = {
    "examples_dirs": str(ROOT / "python" / "gallery"),
    "gallery_dirs": "generated/gallery",
    "backreferences_dir": "generated/backreferences",
    "doc_module": ("quorbin",),
    "reference_url": {"quorbin": None},
    "within_subsection_order": "FileNameSortKey",
    "write_computation_times": False,  # a page of them would load scripts from outside
    "download_all_examples": False,
    "copyfile_regex": "",
}

html_theme = "furo"
html_static_path = ["_static"]
html_css_files = ["site.css"]
html_show_sphinx = False
html_copy_source = False
pygments_style = "tango"
pygments_dark_style = "github-dark"


def write_page(name: str, body: str) -> None:
    """Write a page of a text that lies at the root of the tree, with links as they are from here."""
    body = re.sub(r'<img src="([^"]*)" width="(\d+)" alt="([^"]*)">', r"![\3](\1){width=\2px}", body)
    body = re.sub(r"\]\(docs/pictures/", "](../../pictures/", body)
    body = re.sub(r"\]\(docs/(?:site/)?", "](../", body)
    body = body.replace("](CHANGELOG.md)", "](changes.md)")
    body = re.sub(r"\[([^]]*)\]\((?!\.\./|changes)[^:)]*\)", r"`\1`", body)  # what has no page here
    (SITE / "generated" / f"{name}.md").write_text(body, encoding="utf-8")


def sections_of(text: str, headings: str) -> str:
    """Return those sections whose headings the expression matches."""
    parts = [part for part in re.split(r"^(?=## )", text, flags=re.M) if re.match(rf"## (?:{headings})", part)]
    if not parts:
        raise ExtensionError(f"README.md has no section {headings}")
    return "".join(parts)


def check_complete() -> None:
    """Every public name of Python and every public header has its place in the reference."""
    listed = set(re.findall(r"^   (\w+)$", (SITE / "reference.rst").read_text(encoding="utf-8"), flags=re.M))
    missing = set(quorbin.__all__) - listed - {"__version__"}
    pages = "".join(page.read_text(encoding="utf-8") for page in (SITE / "cpp").glob("*.md"))
    shown = set(re.findall(r"^## (\S+\.h)$", pages, flags=re.M))
    include = ROOT / "include" / "quorbin"
    headers = {str(header.relative_to(include)) for header in include.rglob("*.h")}
    missing |= headers - shown - {"quorbin.h", "quorbin2d.h", "quorbin3d.h", "quorbin_export.h"}
    if missing:
        raise ExtensionError(f"no page of the reference has {', '.join(sorted(missing))}")


def setup(app: object) -> None:
    """Make the pages that are not written by hand, before Sphinx looks for them."""
    (SITE / "generated").mkdir(exist_ok=True)
    readme = (ROOT / "README.md").read_text(encoding="utf-8")
    write_page("tool", sections_of(readme, "The tool")[1:])  # with the heading of a page
    write_page("performance", sections_of(readme, "What there is")[1:])
    write_page("library", "# The library in C++\n\n" + sections_of(readme, "The library|Using it"))
    write_page("changes", (ROOT / "CHANGELOG.md").read_text(encoding="utf-8"))
    check_complete()
