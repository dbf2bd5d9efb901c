"""Who may include whom. usage: check_includes.py ROOT; prints each offence, exits 1 if there is one."""
import re
import subprocess
import sys
from pathlib import Path

INCLUDE = re.compile(r'^\s*#\s*include\s+["<]([^">]+)[">]')
LIBRARY = ("engine", "visual", "mesh", "selection", "view", "suite")
GEOMETRY = {"selection/" + name + ending for name in ("Box", "Ray", "Cone", "Plane") for ending in (".h", ".cpp")}
CONCRETE = re.compile(r"^visual/(geometry|station|task|handle|process|preview)/")


def offence(source, target):
    """Why `source` must not include `target`; None if it may."""
    folder = source.split("/")[0]
    if target == "Ogre.h":
        return "Ogre is included narrowly"
    if folder in LIBRARY and target.split("/")[0] in ("apps", "tests", "bench", "examples"):
        return "the library knows no host and no test"
    if folder == "suite" and target.split("/")[0] in ("engine", "visual", "mesh", "selection", "view"):
        return "the sibling libraries know nothing of the viewport"
    if source in GEOMETRY and (target.startswith("Ogre") or target.split("/")[0] in ("engine", "visual", "view", "mesh")):
        if target != "visual/VrnVisualApi.h":
            return "geometry stands on the value types alone"
    if source in ("mesh/Mesh.h", "mesh/Mesh.cpp") and target.startswith("Ogre"):
        return "a triangle record knows nothing of the engine"
    if source in ("engine/Scene.h", "engine/Scene.cpp") and CONCRETE.match(target):
        return "only engine/scene/ meets the concrete visuals"
    if folder == "selection" and target.startswith("engine/scene/"):
        return "picking reaches a visual through what it asks of it"
    if folder == "apps" and target.endswith(".cpp"):
        return "headers only"
    return None


def main(root):
    names = subprocess.run(["git", "-C", root, "ls-files", "--cached", "--others", "--exclude-standard", "*.h", "*.cpp"],
                           capture_output=True, text=True, check=True).stdout.split()
    found = False
    for name in names:
        path = Path(root, name)
        if not path.exists():
            continue
        text = path.read_text(encoding="utf-8")
        if name.endswith(".h") and "#pragma once" not in text:
            print(f"{name}: no #pragma once")
            found = True
        for number, line in enumerate(text.splitlines(), 1):
            match = INCLUDE.match(line)
            reason = match and offence(name, match.group(1))
            if reason:
                print(f"{name}:{number}: includes {match.group(1)}: {reason}")
                found = True
    return 1 if found else 0


sys.exit(main(sys.argv[1]))
