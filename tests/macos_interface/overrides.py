"""Which methods each Objective-C class of the adapters takes over from the system.

A forgotten or misspelled override is no error of the language: the class just inherits, and a method that
overrides nothing is a new one. overrides.json says what each class has to take over, and what of that has to
call the inherited method; here the sources are held against it, and it against the declarations.
"""

import json
import re
from pathlib import Path

HERE = Path(__file__).resolve().parent
ROOT = HERE.parents[1]

BLOCK = re.compile(r"^@(interface|implementation|protocol)\s+(\w+)\b(?!\s*[,;])(?:<[^>]*>)?\s*"
                   r"(?:\(\w*\))?\s*(?::\s*(\w+))?(.*?)^@end", re.M | re.S)
METHOD = re.compile(r"^\s*([-+])\s*\([^;{]*?\)\s*(\w[^;{]*?)\s*(?:NS_\w+|SINCE\([^)]*\)|DEPR\([^;]*\))?\s*([;{])", re.M)
PROPERTY = re.compile(r"@property\s*(\([^)]*\))?[^;]*?(\w+)\s*(?:SINCE\([^)]*\)|NS_\w+)?\s*;")


def selector(sign, text):
    parts = re.findall(r"(\w+)\s*:", re.sub(r"\((?:[^()]|\([^()]*\))*\)", "", text))
    return sign + ("".join(f"{part}:" for part in parts) if parts else text.split()[0])


def methods(body):
    """Selector and, for an implementation, the text of each method."""
    found = {}
    matches = list(METHOD.finditer(body))
    for index, match in enumerate(matches):
        end = matches[index + 1].start() if index + 1 < len(matches) else len(body)
        found[selector(match[1], match[2])] = body[match.end():end]
    for match in PROPERTY.finditer(body):
        getter = re.search(r"getter=(\w+)", match[1] or "")
        found["-" + (getter[1] if getter else match[2])] = ""
    return found


def declarations(texts):
    """Every class and protocol: what it inherits from, and its methods."""
    known = {}
    for text in texts:
        for match in BLOCK.finditer(text):
            kind, name, base, body = match.groups()
            if kind == "implementation":
                continue
            header = body.split("\n", 1)[0]
            entry = known.setdefault(name, {"parents": set(), "methods": set()})
            entry["parents"] |= {base} if base else set()
            if kind == "interface" and "<" in header:
                entry["parents"] |= set(re.findall(r"\w+", header.split("<", 1)[1].split(">")[0]))
            entry["methods"] |= set(methods(body))
    return known


def inherited(known, name, seen=None):
    seen = seen if seen is not None else set()
    for parent in known.get(name, {}).get("parents", ()):
        if parent not in seen:
            seen.add(parent)
            yield from known.get(parent, {}).get("methods", ())
            yield from inherited(known, parent, seen)


def offences(table, sources):
    """One line for each difference; `sources` are the texts of the adapters."""
    platform = [path.read_text() for path in sorted((HERE / "include").rglob("*.h"))]
    known = declarations(platform + sources)
    implemented = {}
    for text in sources:
        for match in BLOCK.finditer(text):
            if match[1] == "implementation":
                implemented.setdefault(match[2], {}).update(methods(match[4]))
    for name in sorted(set(table) - set(implemented)):
        yield f"{name}: in the table of overrides, but there is no such class"
    for name, have in sorted(implemented.items()):
        if name not in table:
            yield f"{name}: not in the table of overrides"
            continue
        parents = set(inherited(known, name))
        own = known.get(name, {}).get("methods", set())
        for wanted, rule in table[name].items():
            if wanted not in parents:
                yield f"{name}: nothing that it inherits from has {wanted}"
            if wanted not in have:
                yield f"{name}: {wanted} is not overridden"
            elif rule == "calls super" and f"[super {wanted[1:].split(':')[0]}" not in have[wanted]:
                yield f"{name}: {wanted} does not call the inherited method"
        for extra in sorted(set(have) - set(table[name]) - own):
            yield f"{name}: {extra} is neither declared nor in the table of overrides"


def check(replaced=None):
    """The offences of the adapters as they are, or with the text of one of them (path: text) replaced."""
    table = json.loads((HERE / "overrides.json").read_text())
    folder = ROOT / "src/platform/macos"
    texts = {path: path.read_text() for path in sorted([*folder.glob("*.mm"), *folder.glob("*.h")])}
    texts.update(replaced or {})
    return list(offences(table, list(texts.values())))
