"""Sphinx: how the manual is made (./manual). The sources are this folder, and what ./manual puts beside
it: the generated reference, the samples, the pictures of the dialogs."""

import os
import re
from pathlib import Path

import furo

project = "ArdObjects100"
version = release = os.environ.get("ARD_VERSION", "")
html_title = f"{project} {version}".strip()
author = copyright = ""
language = "en"
# Quotation marks are those of the languages.
smartquotes = False

extensions = ["myst_parser", "sphinx_inline_tabs"]
myst_enable_extensions = ["colon_fence"]
myst_heading_anchors = 3
# Pages that are not to be found say so.
nitpicky = True

html_theme = "furo"
# Debian's theme knows how to be dark, but not to be so by itself where the reader's system is.
_styles = (Path(furo.__file__).parent / "theme/furo/static/styles/furo.css").read_text()
_dark = re.search(r'body\[data-theme="dark"\] \{(.*?)\}', _styles, re.S)[1]
html_theme_options = {"dark_css_variables": dict(re.findall(r"--([\w-]+): ([^;]+);", _dark))}
html_static_path = ["_static"]
html_css_files = ["manual.css"]
html_js_files = ["languages.js"]
html_copy_source = False
html_show_sphinx = False
html_show_copyright = False
html_use_index = False
# A summary would have to be fetched from the pages, which a browser does not do from the file system.
html_show_search_summary = False
html_search_scorer = str(Path(__file__).parent / "_static/scorer.js")
pygments_style = "friendly"
pygments_dark_style = "native"
