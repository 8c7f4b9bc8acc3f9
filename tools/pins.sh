# What is fetched at set-up, by version and hash. Sourced by tools/setup.sh.
# shellcheck shell=bash disable=SC2034

# SQLite's amalgamation travels in this npm package, under deps/sqlite3.
sqlite_version=3.54.1
sqlite_package=better-sqlite3@13.2.0
sqlite_sha512=67c43ff71fee3722b1035bf814da1dc88b51551c354de281ae68f7d89871851d1c78d70163ec0ca1bb7f06fecced3cf03c05e39d946d35a12c0139d465229665

# Debian's source tarball of pugixml, from the mirror that apt uses.
pugixml_version=1.13
pugixml_path=pool/main/p/pugixml/pugixml_1.13.orig.tar.gz
pugixml_sha256=5c5ad5d7caeb791420408042a7d88c2c6180781bf218feca259fd9d840a888e1

# The common language runtime and the C# compiler for Windows, 32 bit: clients in the tests, never shipped.
dotnet_package=dotnet-sdk-3.1-win-ia32@3.1.1007
dotnet_sha512=1bb9e5f30600b92e832dcc06d756d7e9fdcb68236ab18c7d6280bfdb6936c8f1ee0267cea24dc51d989abd2272a5123b27d63a94ea37f505d013816aab99410e

# Debian's package googletest: its sources in /usr/src/googletest, hashed file by file.
googletest_version=1.12.1-0.2
googletest_sha256=f1fa03209382577d5f4284cb6786579b98d8862948c79d65de3b87ac9c38228a

# The Debian release whose 32-bit Wine is used where the machine has none. Raise the number after the dash when
# the recipe changes.
wine32_suite=bookworm
wine32_key=wine32-bookworm-1

llvm=14
