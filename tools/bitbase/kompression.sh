#!/bin/sh
# Builds and runs the compression benchmark of the bitbase files.
#   tools/bitbase/kompression.sh KDK KTK KDKT ...     synthetic bitbases
#   tools/bitbase/kompression.sh pfad/KDK.kbb ...      existing files
set -e
cd "$(dirname "$0")/../.."
command -v g++ >/dev/null || { apt-get update && apt-get install -y g++; }
command -v cmake >/dev/null || { apt-get update && apt-get install -y cmake; }
cmake -S . -B build -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build build -j2 --target kelvaran_engine >/dev/null
g++ -std=c++20 -O3 -DNDEBUG -Isrc tools/bitbase/kompression.cpp build/libkelvaran_engine.a -lpthread \
    -o build/kelvaran_kompression
[ $# -gt 0 ] || set -- KDK KTK KLSK KDKT KTKB
exec build/kelvaran_kompression "$@"
