#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""scripts/sbom lists the files of an archive, and what a package of algdata is linked with."""
import gzip
import io
import json
import subprocess
import tarfile
import unittest

from support import ScratchRepository, require

LICENCES = """algdata is linked with the packages below. This file holds their licences.

compiled in: libheader-dev 1.2+ds-3
shared library: liblibrary0 1:4.5
shared library: libold1 6


==== libheader-dev

Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/

Files: test/*
Copyright: 2020 Somebody
License: Zlib

Files: *
Copyright: 2020 Somebody
License: Expat


==== liblibrary0

Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/

Files:
 *
Copyright: 2020 Somebody
License: Own licence
 Do what you like.


==== libold1

A text without fields.
"""


class Sbom(ScratchRepository):
    scripts = ("sbom",)

    def setUp(self):
        super().setUp()
        with tarfile.open(self.root / "sources.tar.gz", "w:gz") as tar:
            source = b"// SPDX-License-Identifier: Apache-2.0\n"
            for path, data in (("top/b.cpp", source), ("top/a.txt", b"")):
                member = tarfile.TarInfo(path)
                member.size, member.mtime = len(data), 1700000000
                tar.addfile(member, io.BytesIO(data))
        self.write("package/DEBIAN/control", "Package: algdata\nVersion: 2.1.0\nArchitecture: all\n"
                                             "Maintainer: A <a@b.c>\nDescription: a package\n")
        documents = self.root / "package/usr/share/doc/algdata"
        documents.mkdir(parents=True)
        (documents / "licences.gz").write_bytes(gzip.compress(LICENCES.encode()))
        (self.root / "package/DEBIAN").chmod(0o755)
        subprocess.run(["dpkg-deb", "--root-owner-group", "--build", self.root / "package",
                        self.root / "algdata.deb"], check=True, stdout=subprocess.DEVNULL)
        self.document = json.loads(self.expect(0, "sources.tar.gz", "algdata.deb"))

    def expect(self, expected, *arguments):
        status, output = self.run_in(self.root, "scripts/sbom", *arguments)
        self.assertEqual(status, expected, output)
        return output

    def test_refuses_other_files(self):
        self.assertEqual(self.expect(1, "missing.tar.gz", "algdata.deb"),
                         "scripts/sbom: missing.tar.gz: expected an archive of the sources; "
                         "[Errno 2] No such file or directory: 'missing.tar.gz'\n")
        self.assertIn("sources.tar.gz: expected a Debian package; ",
                      self.expect(1, "sources.tar.gz", "sources.tar.gz"))
        self.assertIn("missing.deb: expected a Debian package; ",
                      self.expect(1, "sources.tar.gz", "missing.deb"))

    def test_states_the_time_of_the_sources(self):
        self.assertEqual(self.document["creationInfo"]["created"], "2023-11-14T22:13:20Z")

    def test_lists_files_with_their_sums_and_licences(self):
        listed = [(file["fileName"], file["licenseInfoInFiles"], file["checksums"][0]["checksumValue"])
                  for file in self.document["files"]]
        self.assertEqual(listed, [
            ("./a.txt", ["NONE"], "da39a3ee5e6b4b0d3255bfef95601890afd80709"),
            ("./b.cpp", ["Apache-2.0"], "783b61aa72c2dbc2e0406395dc4a0db19dbe9aa5")])

    def test_lists_what_is_linked(self):
        listed = [(package["name"], package["versionInfo"], package["licenseDeclared"])
                  for package in self.document["packages"]]
        self.assertEqual(listed, [
            ("alg-data-interface", "2.1.0", "Apache-2.0"),
            ("algdata", "2.1.0", "Apache-2.0"),
            ("libheader-dev", "1.2+ds-3", "MIT"),
            ("liblibrary0", "1:4.5", "LicenseRef-Own-licence"),
            ("libold1", "6", "NOASSERTION")])
        self.assertEqual(self.document["packages"][2]["externalRefs"][0]["referenceLocator"],
                         "pkg:deb/debian/libheader-dev@1.2%2Bds-3")
        self.assertEqual(self.document["hasExtractedLicensingInfos"], [
            {"licenseId": "LicenseRef-Own-licence", "name": "Own licence",
             "extractedText": " Do what you like.\n"}])

    def test_says_how_it_is_linked(self):
        linked = [(relation["relationshipType"], relation["relatedSpdxElement"])
                  for relation in self.document["relationships"] if "LINK" in relation["relationshipType"]]
        self.assertEqual(linked, [("STATIC_LINK", "SPDXRef-Package-libheader-dev"),
                                  ("DYNAMIC_LINK", "SPDXRef-Package-liblibrary0"),
                                  ("DYNAMIC_LINK", "SPDXRef-Package-libold1")])


if __name__ == "__main__":
    require("dpkg-deb", "git")
    unittest.main()
