#!/usr/bin/env python3
"""Writes what Doxygen reads into a folder: the Markdown pages with links and anchors as Doxygen knows them, the tables of
functions, attributes and statuses, the files that pages link to, and the public header with Doxygen's marks.

Usage: docs_input.py FOLDER
"""

import re
import shutil
import sys
from pathlib import Path

import docs_text
from docs_text import ROOT


# --- Pages

CODE_SPAN = re.compile(r"(?<!`)`([^`]+)`(?!`)")


NAMES = set(docs_text.exported_names()) | {name for name, _, _ in docs_text.definitions("TARNEX_")}


def with_references(text):
    """Names of functions, attributes, values and statuses become links."""
    return re.sub(r"(?<![\w@])TARNEX_\w+", lambda name: f'@ref {name[0]} "{name[0]}"' if name[0] in NAMES else name[0], text)


def code_span(match):
    """Doxygen would look for names to link, quotes and dashes in what stands between backticks."""
    if match.group(1) in NAMES:
        return f"<code>@ref {match.group(1)}</code>"
    text = re.sub(r"([\\*@<>&#%_\"])", r"\\\1", match.group(1))
    return "<code>" + text.replace("--", "\\--").replace("::", "\\::") + "</code>"


def page_label(path):
    relative = path.relative_to(ROOT)
    if relative == Path("docs/README.md"):
        return "documentation"
    return "page_" + re.sub(r"\W", "_", str(relative.with_suffix("") if relative.suffix == ".md" else relative))


def section_label(path, anchor):
    return page_label(path) + "__" + anchor.replace("-", "_")


def convert_page(path, linked_files, images, order):
    """The page's text for Doxygen. Files that it links to and that are no pages are added to `linked_files`, images to
    `images`, and the pages that the index links to, to `order`."""

    def target(match):
        text, link = match.groups()
        if "://" in link or link.startswith("mailto:"):
            return match.group(0)
        name, _, anchor = link.partition("#")
        file = (path.parent / name).resolve() if name else path
        if file.is_dir():
            return text
        if page_label(path) == "documentation" and not anchor:
            order.append(page_label(file))
        if file not in docs_text.pages() and file != docs_text.HEADER:
            linked_files.add(file)
        return f"[{text}](@ref {section_label(file, anchor) if anchor else page_label(file)})"

    def image(match):
        file = (path.parent / match.group(2)).resolve()
        images.add(file)
        return f"![{match.group(1)}]({file.name})"

    lines = []
    taken = {}
    for _, line, prose in docs_text.lines_outside_code(path.read_text()):
        if prose:
            heading = docs_text.HEADING.match(line)
            line = CODE_SPAN.sub(code_span, docs_text.LINK.sub(target, docs_text.IMAGE.sub(image, line)))
            if heading:
                anchor = docs_text.slug(heading.group(2), taken)
                label = section_label(path, anchor) if len(heading.group(1)) > 1 else page_label(path)
                line = f"{line} {{#{label}}}"
        lines.append(line)
    if page_label(path) == "documentation":
        lines += ["", "## Reference {#reference}", ""]
        lines += [f"- @ref {page}" for page in REFERENCE]
    return "\n".join(lines) + "\n"


def file_page(path):
    """A file that a page links to, as a page."""
    language = {".c": "c", ".cpp": "cpp", ".h": "cpp", ".xml": "xml", ".py": "py"}.get(path.suffix, "txt")
    relative = path.relative_to(ROOT)
    return f"# {relative} {{#{page_label(path)}}}\n\n````{{.{language}}}\n{path.read_text()}\n````\n"


# --- Tables

REFERENCE = ("functions", "attributes", "statuses", "files_shown")

def brief(comment):
    """The first sentence."""
    return re.split(r"(?<=\.)\s", comment, maxsplit=1)[0]


def escape(text):
    """Plain text, in which Doxygen is to find neither commands nor emphasis."""
    text = re.sub(r"([\\%@<>&#])", r"\\\1", text).replace("::", "\\::")
    return with_references(text)


def cell(text):
    return escape(text).replace("|", "\\|")


def functions(header):
    """(section, name, description) of every function, in the header's order."""
    section = None
    for block in re.finditer(
        r"/\* ---- (?P<title>.*?) -{4,}|/\*\*(?P<comment>.*?)\*/\s*\nViStatus _VI_FUNC (?P<name>\w+)\(", header, re.S
    ):
        if block["title"]:
            section = block["title"]
        else:
            comment = re.sub(r"\s*\n\s*\*?\s*", " ", block["comment"]).strip()
            yield section, block["name"], comment


def functions_page(header):
    lines = ["# Functions {#functions}", "", f"All 36, in the order of [TARNEX.h](@ref {page_label(docs_text.HEADER)})."]
    last = None
    for section, name, comment in functions(header):
        if section != last:
            lines += ["", f"## {section}", "", "| function | |", "|---|---|"]
            last = section
        lines.append(f"| @ref {name} | {cell(brief(comment))} |")
    return "\n".join(lines) + "\n"


def attributes_page(header):
    lines = ["# Attributes {#attributes}", "", "All 27. The access functions are those of the type: an attribute of the "
             "type ViReal64 is read with @ref TARNEX_GetAttributeViReal64 and set with "
             "@ref TARNEX_SetAttributeViReal64."]
    for title, first, last, note in (
        ("IviDCPwr attributes", 1250000, 1250999, "repCapName selects the channel."),
        ("IVI inherent attributes", 1050000, 1050999, "They take no channel: repCapName is ignored."),
    ):
        lines += ["", f"## {title}", "", note, "", "| attribute | identifier | type | access | value or unit |",
                  "|---|---|---|---|---|"]
        for name, value, comment in docs_text.definitions("TARNEX_ATTR_", header):
            if first <= int(value) <= last:
                kind, access, meaning = re.fullmatch(r"(\w+), (read/write|read-only): (.*)", comment).groups()
                lines.append(f"| @ref {name} | {value} | {kind} | {access} | {cell(meaning)} |")
    return "\n".join(lines) + "\n"


def statuses_page(header):
    lines = ["# Status codes {#statuses}", "", "Negative statuses, 0xBFFA... written in hexadecimal, are errors; positive "
             "ones are success with a remark. Beside these a function may hand on a positive status of VISA (0x3FFF0005: "
             "the termination character was read) and a status of the configuration server (0xBFFA12xx).", "",
             "| status | code | message |", "|---|---|---|", "| VI_SUCCESS | 0 | |"]
    for prefix in ("TARNEX_ERROR_", "TARNEX_WARN_"):
        for name, value, message in docs_text.definitions(prefix, header):
            code = re.search(r"0x[0-9A-F]{8}", value).group(0)
            lines.append(f"| @ref {name} | {code} | {cell(message)} |")
    return "\n".join(lines) + "\n"


# --- Header

def mark_header(header):
    """The header's plain comments, as Doxygen wants them: file, sections and what stands behind a #define."""
    out = []
    label = None
    in_file_comment = False
    named = False
    comment = False  # inside a section's comment of several lines

    def close():
        nonlocal named
        if named:
            out.append("/** @} */")
            named = False

    for line in header.splitlines():
        if not out and line == "/*":
            out.append(f"/** @page {page_label(docs_text.HEADER)} TARNEX.h")
            in_file_comment = True
            continue
        if in_file_comment:
            if line == " */":
                in_file_comment = False
            elif heading := re.fullmatch(r" \* ([A-Z]\w+)", line):
                line = f" * @par {heading.group(1)}"
            out.append(line if line.startswith(" * @") else escape_comment(line))
            continue
        if section := re.match(r"/\* ---- (.*?) -{4,}(?P<rest>.*)$", line):
            close()
            if label:
                out.append("/** @} */")
            title = section.group(1).partition(":")[0]
            label = re.sub(r"\W+", "_", title).strip("_").lower()
            out.append(f"/** @defgroup {label} {title}\n * From [TARNEX.h](@ref {page_label(docs_text.HEADER)}).\n *")
            comment = "*/" not in section["rest"]
            if not comment:
                out.append(" * @{ */")
            continue
        if comment and line == " */":
            comment = False
            out.append(" * @{ */")
            continue
        if line == "#ifdef __cplusplus" and label:
            close()
            out.append("/** @} */")
            label = None
        if definition := docs_text.DEFINITION.match(line):
            name, value, text = definition.groups()
            out.append(f"#define {name} {value} /**< {escape(text)} */")
            continue
        if label and (alone := re.fullmatch(r"/\* (.*) \*/", line)) and "clang-format" not in line:
            close()
            out.append(f"/** @name {escape(alone.group(1))}\n * @{{ */")
            named = True
            continue
        if not line:
            close()
        out.append(escape_comment(line) if line.startswith((" *", "/**")) else line)
    return "\n".join(out) + "\n"


def escape_comment(line):
    mark, text = re.match(r"(\s*/?\*+/?\s?)(.*)", line).groups()
    tail = ""
    if text.endswith("*/"):
        text, tail = text[:-2], "*/"
    return mark + with_references(re.sub(r"([%<>#])", r"\\\1", text)) + tail


def main():
    folder = Path(sys.argv[1])
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    linked_files, images, order = set(), set(), ["documentation"]
    texts = {page_label(path): convert_page(path, linked_files, images, order) for path in docs_text.pages()}
    (folder / "images").mkdir()
    for file in images:
        shutil.copy(file, folder / "images")
    forgotten = texts.keys() - order
    if forgotten:
        sys.exit(f"docs_input: docs/README.md does not link to {sorted(forgotten)}")
    # Doxygen lists pages in the order of its files.
    for number, label in enumerate(label for label in order if label in texts):
        (folder / f"{number:02}_{label}.md").write_text(texts[label])
    files = [f"- @subpage {page_label(path)}" for path in sorted(linked_files)]
    (folder / "94_files.md").write_text("\n".join(["# Files {#files_shown}", "", *files, ""]))
    for path in linked_files:
        (folder / f"95_{page_label(path)}.md").write_text(file_page(path))
    header = docs_text.HEADER.read_text()
    (folder / "90_functions.md").write_text(functions_page(header))
    (folder / "91_attributes.md").write_text(attributes_page(header))
    (folder / "92_statuses.md").write_text(statuses_page(header))
    (folder / "TARNEX.h").write_text(mark_header(header))


main()
