#!/usr/bin/env python3
"""Writes the parts that a program is built from, as SPDX 2.3 in JSON.

    spdx.py BUILD PROGRAM VERSION OUTPUT

The build folder was built with Ninja, and the linker wrote PROGRAM.map beside the program. From that map come the
libraries whose members lie in the program. The program names the libraries that it loads, and Ninja's records name the
headers that were compiled in. Each file is traced to the Debian package it came with. Nothing is listed by hand.
SOURCE_DATE_EPOCH is the time of creation. The same build gives the same bytes.
"""
import datetime
import hashlib
import json
import os
import re
import subprocess
import sys
from pathlib import Path

# Debian's short names of licences, where SPDX has others.
SPDX_NAMES = {
    "Expat": "MIT",
    "GPL-2": "GPL-2.0-only",
    "GPL-2+": "GPL-2.0-or-later",
    "GPL-3": "GPL-3.0-only",
    "GPL-3+": "GPL-3.0-or-later",
    "LGPL-2.1": "LGPL-2.1-only",
    "LGPL-2.1+": "LGPL-2.1-or-later",
    "LGPL-3": "LGPL-3.0-only",
    "LGPL-3+": "LGPL-3.0-or-later",
    "MPL-1.1": "MPL-1.1",
    "Apache-2.0": "Apache-2.0",
}


def output_of(*command, **options):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True, **options).stdout


def of_system(path):
    return path.startswith("/usr/") or path.startswith("/lib")


def linked_in(build, program):
    """(the system's files, of which parts lie in the program, our own objects and archives)."""
    theirs, ours = set(), set()
    for line in Path(build, "bin", program + ".map").read_text(errors="replace").splitlines():
        member = re.match(r"(\S+\.a)\(\S+\)$", line)
        loaded = re.match(r"LOAD (\S+\.o)$", line)
        name = (member or loaded)[1] if member or loaded else None
        if name:
            (theirs if of_system(name) else ours).add(os.path.normpath(name) if of_system(name) else name)
    return theirs, ours


def loaded(path):
    """The shared libraries that the program asks for."""
    names = re.findall(r"\(NEEDED\).*\[(.*)\]", output_of("readelf", "-dW", path))
    places = dict(re.findall(r"(\S+) => (\S+)", output_of("ldd", path)))
    return {places[name] for name in names if name in places}


def compiled_in(build, ours):
    """The system's headers that the objects of the program were compiled with."""
    folders = []
    for name in ours:
        path = Path(name)
        folders.append(str(path.parent / "CMakeFiles" / (path.stem.removeprefix("lib") + ".dir")) + "/"
                       if path.suffix == ".a" else name)
    headers, wanted = set(), False
    for line in output_of("ninja", "-C", build, "-t", "deps").splitlines():
        if line.startswith("    "):
            if wanted and of_system(line.strip()):
                headers.add(os.path.normpath(line.strip()))
        else:
            wanted = any(line.startswith(folder) for folder in folders)
    return headers


def packages_of(paths):
    """The installed packages that the files belong to, {name: (version, source, architecture)}."""
    # Libraries are recorded where they lay before /lib became /usr/lib.
    spellings = {path: (path, os.path.realpath(path), path.removeprefix("/usr"), "/usr" + path) for path in paths}
    asked = sorted({name for names in spellings.values() for name in names})
    owners = {}
    for line in subprocess.run(["dpkg-query", "-S", *asked], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                               text=True).stdout.splitlines():
        if not line.startswith("diversion"):
            packages, path = line.split(": ", 1)
            owners[path] = packages.split(",")[0]
    names = set()
    for path, spelt in spellings.items():
        owner = next((owners[name] for name in spelt if name in owners), None)
        if owner is None:
            sys.exit(f"spdx.py: no package brought {path}, which is linked or compiled in")
        names.add(owner)
    packages = {}
    for name in sorted(names):
        asked = output_of("dpkg-query", "-W", "-f", "${Package}|${Version}|${source:Package}|${Architecture}", name)
        package, version, source, architecture = asked.split("|")
        packages[package] = (version, source, architecture)
    return packages


def licence_of(package):
    """What the package's copyright file declares for all its files, where a machine can read it."""
    path = Path("/usr/share/doc", package, "copyright")
    text = path.read_text(errors="replace") if path.exists() else ""
    stanza = re.search(r"^Files:\s*\*\s*\n(?:.+\n)*?License:[ \t]*(.+)$", text, re.MULTILINE)
    if not text.startswith("Format:") or not stanza:
        return "NOASSERTION"
    parts = re.split(r"\s+or\s+", stanza[1].strip())
    if all(part in SPDX_NAMES for part in parts):
        return SPDX_NAMES[parts[0]] if len(parts) == 1 else "(" + " OR ".join(SPDX_NAMES[part] for part in parts) + ")"
    return "NOASSERTION"


def identifier(name):
    return "SPDXRef-Package-" + re.sub(r"[^A-Za-z0-9.-]", lambda sign: "." + format(ord(sign[0]), "x"), name)


def described(name, version, source, architecture):
    return {
        "SPDXID": identifier(name),
        "name": name,
        "versionInfo": version,
        "supplier": "Organization: Debian",
        "downloadLocation": "NOASSERTION",
        "filesAnalyzed": False,
        "licenseConcluded": "NOASSERTION",
        "licenseDeclared": licence_of(name),
        "licenseComments": f"/usr/share/doc/{name}/copyright in the package",
        "copyrightText": "NOASSERTION",
        "sourceInfo": f"Debian source package {source}",
        "externalRefs": [{
            "referenceCategory": "PACKAGE-MANAGER",
            "referenceType": "purl",
            "referenceLocator": f"pkg:deb/debian/{name.replace('+', '%2B')}@{version.replace('+', '%2B')}?arch={architecture}",
        }],
    }


def main(build, program, version, output):
    path = str(Path(build, "bin", program))
    static, ours = linked_in(build, program)
    groups = [
        ("STATIC_LINK", False, packages_of(static)),
        ("DYNAMIC_LINK", False, packages_of(loaded(path))),
        ("BUILD_DEPENDENCY_OF", True, packages_of(compiled_in(build, ours))),
    ]
    own = identifier(program)
    packages, relations = {}, [("SPDXRef-DOCUMENT", "DESCRIBES", own)]
    for kind, reverse, group in groups:
        for name, (its_version, source, architecture) in group.items():
            packages[name] = described(name, its_version, source, architecture)
            relations.append((identifier(name), kind, own) if reverse else (own, kind, identifier(name)))
    document = {
        "spdxVersion": "SPDX-2.3",
        "dataLicense": "CC0-1.0",
        "SPDXID": "SPDXRef-DOCUMENT",
        "name": f"{program}-{version}",
        "creationInfo": {
            "created": datetime.datetime.fromtimestamp(int(os.environ["SOURCE_DATE_EPOCH"]), datetime.timezone.utc)
            .strftime("%Y-%m-%dT%H:%M:%SZ"),
            "creators": ["Tool: packaging/spdx.py"],
        },
        "packages": [{
            "SPDXID": own,
            "name": program,
            "versionInfo": version,
            "downloadLocation": "NOASSERTION",
            "filesAnalyzed": False,
            "licenseConcluded": "Apache-2.0",
            "licenseDeclared": "Apache-2.0",
            "copyrightText": "2026 PLUVO maintainers",
            "primaryPackagePurpose": "APPLICATION",
        }] + [packages[name] for name in sorted(packages)],
        "relationships": [
            {"spdxElementId": a, "relationshipType": kind, "relatedSpdxElement": b} for a, kind, b in relations
        ],
    }
    content = hashlib.sha256(json.dumps(document, sort_keys=True).encode()).hexdigest()
    document["documentNamespace"] = f"http://www.pluvo.example/spdx/{program}-{version}-{content}"
    Path(output).write_text(json.dumps(document, indent=1) + "\n")


if __name__ == "__main__":
    if len(sys.argv) != 5 or "SOURCE_DATE_EPOCH" not in os.environ:
        sys.exit(__doc__)
    main(*sys.argv[1:])
