"""Licences and the bill of materials (SPDX 2.3) of a package, from the records of the distribution's own packages.

Contents/Resources/Licenses/LICENSE     the installer's own
Contents/Resources/Licenses/NAME.txt    what the source package NAME says of itself, its authors and its terms
Contents/Resources/Licenses/common/     the long texts that those refer to
Contents/Resources/Licenses/HalvornInstaller.spdx.json
"""
import datetime, hashlib, json, os, re, shutil, subprocess, sys

HERE = os.path.dirname(os.path.realpath(__file__))
CHANGED = {"icu": "The data in libicudata is cut: see packaging/linux/icu-items in the installer's source."}
ABOUT = """The installer itself stands under LICENSE. What it brings along stands under the terms in the files beside this one, a file
for each source package; HalvornInstaller.spdx.json says which file of the bundle comes from which package in which version.
Their sources are what "apt-get source NAME=VERSION" brings, for any time from https://snapshot.debian.org.

Each library in Contents/Frameworks is a file of its own: another build of it with the same name may be put in its place, and the
installer uses that.
"""


def asked(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout.strip()


def owner_of(path):
    """The binary package that a file belongs to. Folders that were merged are recorded under either name."""
    candidates = [path] + ([path.removeprefix("/usr")] if path.startswith("/usr/") else ["/usr" + path])
    for candidate in candidates:
        answer = subprocess.run(["dpkg", "-S", candidate], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        if answer.returncode == 0:
            return answer.stdout.split(": ")[0].split(",")[0].strip()
    sys.exit(f"package_bundle: {path} belongs to no package of this system: its licence is not known")


def sources_of(files):
    """By name of the source package: version, home page, copyright file, and the places in the bundle."""
    found = {}
    for place, path in sorted(files.items()):
        package = owner_of(os.path.realpath(path))
        name, version, page = asked("dpkg-query", "-W", "-f", "${source:Package}\t${source:Version}\t${Homepage}", package).split("\t")
        record = f"/usr/share/doc/{package.split(':')[0]}/copyright"
        if not os.path.exists(record):
            sys.exit(f"package_bundle: {record} is missing, as on systems that leave out documentation")
        entry = found.setdefault(name, {"version": version, "page": page, "record": record, "places": []})
        entry["places"].append(place)
    return found


def write_licences(folder, sources):
    os.makedirs(os.path.join(folder, "common"))
    shutil.copyfile(os.path.join(HERE, "../../LICENSE"), os.path.join(folder, "LICENSE"))
    with open(os.path.join(folder, "README"), "w") as file:
        file.write(ABOUT)
    common = set()
    for name, source in sources.items():
        with open(source["record"], encoding="utf-8", errors="replace") as file:
            source["text"] = file.read()
        with open(os.path.join(folder, f"{name}.txt"), "w", encoding="utf-8") as file:
            file.write(source["text"])
        common.update(each.rstrip(".") for each in re.findall(r"/usr/share/common-licenses/([\w.+-]+)", source["text"]))
    for name in common:
        if os.path.exists(f"/usr/share/common-licenses/{name}"):
            shutil.copyfile(f"/usr/share/common-licenses/{name}", os.path.join(folder, "common", name))


def digest(path, kind):
    with open(path, "rb") as file:
        return hashlib.file_digest(file, kind).hexdigest()


def file_entries(bundle, skipped):
    entries = []
    for parent, folders, names in os.walk(bundle):
        folders.sort()
        for name in sorted(names):
            path = os.path.join(parent, name)
            if path == skipped or os.path.islink(path):
                continue
            place = os.path.relpath(path, bundle)
            entries.append({"SPDXID": "SPDXRef-File-" + hashlib.sha256(place.encode()).hexdigest()[:16], "fileName": "./" + place,
                            "checksums": [{"algorithm": "SHA1", "checksumValue": digest(path, "sha1")},
                                          {"algorithm": "SHA256", "checksumValue": digest(path, "sha256")}],
                            "licenseConcluded": "NOASSERTION", "copyrightText": "NOASSERTION"})
    return entries


def package_entry(name, version, declared, page):
    return {"SPDXID": "SPDXRef-Package-" + re.sub(r"[^A-Za-z0-9.-]", "-", name), "name": name, "versionInfo": version,
            "downloadLocation": "NOASSERTION", "homepage": page or "NOASSERTION", "filesAnalyzed": False,
            "licenseConcluded": "NOASSERTION", "licenseDeclared": declared, "copyrightText": "NOASSERTION"}


def reference(kind, name):
    return f"{kind}-" + re.sub(r"[^A-Za-z0-9.-]", "-", name)


def bill(bundle, sources, time, path):
    """Which file comes from where, under which terms."""
    with open(os.path.join(bundle, "Contents/Info.plist")) as file:
        version = re.search(r"CFBundleShortVersionString</key>\s*<string>(.*?)<", file.read()).group(1)
    packages = [package_entry("HalvornInstaller", version, "MIT", "")]
    relations = [("SPDXRef-DOCUMENT", "DESCRIBES", "SPDXRef-Package-HalvornInstaller")]
    files = file_entries(bundle, path)
    identity = {entry["fileName"]: entry["SPDXID"] for entry in files}
    terms = []
    foreign = {}
    for name, source in sorted(sources.items()):
        entry = package_entry(name, source["version"], reference("LicenseRef", name), source["page"])
        entry["externalRefs"] = [{"referenceCategory": "PACKAGE-MANAGER", "referenceType": "purl",
                                  "referenceLocator": f"pkg:deb/debian/{name}@{source['version']}?arch=source"}]
        if name in CHANGED:
            entry["comment"] = CHANGED[name]
        packages.append(entry)
        terms.append({"licenseId": reference("LicenseRef", name), "name": f"The terms of {name}", "extractedText": source["text"]})
        relations.append(("SPDXRef-Package-HalvornInstaller", "DEPENDS_ON", entry["SPDXID"]))
        foreign.update((f"./{place}", entry["SPDXID"]) for place in source["places"])
    for name, file in identity.items():
        relations.append((foreign.get(name, "SPDXRef-Package-HalvornInstaller"), "CONTAINS", file))
    unique = hashlib.sha256("".join(entry["checksums"][1]["checksumValue"] for entry in files).encode()).hexdigest()
    return {"spdxVersion": "SPDX-2.3", "dataLicense": "CC0-1.0", "SPDXID": "SPDXRef-DOCUMENT", "name": f"HalvornInstaller-{version}",
            "documentNamespace": f"https://halvorn.example/spdx/{unique}",
            "creationInfo": {"created": datetime.datetime.fromtimestamp(time, datetime.timezone.utc).strftime("%Y-%m-%dT%H:%M:%SZ"),
                             "creators": ["Tool: package_bundle"]},
            "packages": packages, "files": files, "hasExtractedLicensingInfos": terms,
            "relationships": [{"spdxElementId": one, "relationshipType": kind, "relatedSpdxElement": other}
                              for one, kind, other in relations]}


def write_notices(bundle, files, time):
    """FILES tells for each place in the bundle from where on this system it came."""
    folder = os.path.join(bundle, "Contents/Resources/Licenses")
    sources = sources_of(files)
    write_licences(folder, sources)
    path = os.path.join(folder, "HalvornInstaller.spdx.json")
    with open(path, "w", encoding="utf-8") as file:
        json.dump(bill(bundle, sources, time, path), file, indent=1, ensure_ascii=False)
        file.write("\n")
