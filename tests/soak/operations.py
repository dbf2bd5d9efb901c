"""Writes a C++ table of every public operation of the facade, read from its header.

usage: operations.py SCENE_H OUTPUT

A line for each operation, and for each overload:
    OPERATION("name(types)", thread, call)
`thread` is the word that the header says it with: any, caller or render; `call` is the operation on `scene`, with an
argument `script.make<type>("operation.parameter")` for each parameter. An operation that is added to the header is
thereby in the table, and a type without a maker does not compile.
"""
import re
import sys
from pathlib import Path

#: What a script must not do: these make the scene, run the queue or delete what a visual's owner deletes.
LEFT_OUT = {"isNull", "Get", "Init", "createCamera", "processMsgs", "deleteVisual", "addTempVisual",
            "buildTask"}


def public_part(text):
    body = text[text.index("class VRN_VISUAL_API Scene {"):]
    return body[body.index("public:"):body.index("private:")]


def without_definitions(text):
    """Nested structures and the bodies of inline operations, gone."""
    text = re.sub(r"\b(struct|enum class) \w+[^;{(]*\{(?:[^{}]|\{[^{}]*\})*\};", "", text)
    return re.sub(r"\)\s*(const)?\s*\{[^{}]*\}", r") \1;", text)


def split_parameters(text):
    parts, depth, current = [], 0, ""
    for c in text:
        depth += c in "<("
        depth -= c in ">)"
        if c == "," and depth == 0:
            parts.append(current)
            current = ""
        else:
            current += c
    return [" ".join(part.split()) for part in parts + [current] if part.strip()]


def type_and_name(parameter):
    match = re.match(r"(.*?)(\w+)$", parameter)
    kind = re.sub(r"\s*&+$", "", match[1].strip())
    return re.sub(r"^const ", "", kind), match[2]


def thread_word(text):
    """Of several words the one that allows least; what is said in other words is the caller's."""
    for word in ("render", "caller"):
        if word in text:
            return word
    return "any" if re.search(r"\bany\b", text) else "caller"


def statements(text):
    """(comment, code) of each declaration."""
    comment, code = "", ""
    for line in map(str.strip, text.splitlines()):
        if line.startswith("//"):
            comment = comment + " " + line.lstrip("/ ") if not code else comment
            continue
        code = f"{code} {line}".strip()
        if code.endswith(";"):
            yield comment, code[:-1].strip()
            comment, code = "", ""
        elif not code:
            comment = ""


def operations(header):
    """(name, types, names, thread) of each, in the order of the header."""
    section = "any"
    for block in re.split(r"(?=^\s*// --- )", without_definitions(public_part(header)), flags=re.M):
        title = re.match(r"\s*// --- (.*)", block)
        if title:
            section = thread_word(title[1])
        for comment, code in statements(block):
            match = re.search(r"(\w+)\(((?:[^()]|\([^()]*\))*)\)(?: const)?$", code)
            if not match or "=" in code.split("(")[0] or match[1] in LEFT_OUT:
                continue
            said = re.findall(r"Thread: ([^.]*)", comment)
            pairs = [type_and_name(p) for p in split_parameters(match[2])]
            yield match[1], [p[0] for p in pairs], [p[1] for p in pairs], thread_word(said[-1]) if said else section


def main(header, output):
    lines = []
    for name, types, names, thread in operations(Path(header).read_text(encoding="utf-8")):
        makers = ", ".join(f'script.make<{kind}>("{name}.{parameter}")' for kind, parameter in zip(types, names))
        label = f"{name}({', '.join(types)})"
        lines.append(f'OPERATION("{label}", {thread}, scene.{name}({makers}))\n')
    Path(output).write_text("".join(lines), encoding="utf-8")


main(*sys.argv[1:])
