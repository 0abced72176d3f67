#!/bin/sh
# Installs what the build needs on a fresh Debian machine (as root), or says what to install.
# The C# and Java compilers only serve optional tests: failing to get them never fails setup.
# "setup.sh fuzz" also installs clang 14 with libFuzzer, for make fuzz.
missing=""
if [ "${1:-}" = fuzz ]; then
  command -v clang++-14 >/dev/null 2>&1 || missing="$missing clang-14"
  dpkg -s libclang-rt-14-dev >/dev/null 2>&1 || missing="$missing libclang-rt-14-dev"
fi
command -v cmake >/dev/null 2>&1 || missing="$missing cmake"
command -v g++ >/dev/null 2>&1 || missing="$missing g++"
command -v make >/dev/null 2>&1 || missing="$missing make"
[ -f /usr/include/gtest/gtest.h ] || missing="$missing libgtest-dev"
command -v pkg-config >/dev/null 2>&1 || missing="$missing pkg-config"
optional=""
command -v mcs >/dev/null 2>&1 || optional="$optional mono-mcs"
command -v javac >/dev/null 2>&1 || optional="$optional default-jdk-headless"
[ -z "$missing" ] && [ -z "$optional" ] && exit 0
if [ "$(id -u)" = "0" ]; then
  if [ -n "$missing" ]; then
    echo "installing:$missing"
    apt-get update && DEBIAN_FRONTEND=noninteractive apt-get install -y$missing || exit 1
  fi
  if [ -n "$optional" ]; then
    echo "installing (optional):$optional"
    { [ -n "$missing" ] || apt-get update; } &&
      DEBIAN_FRONTEND=noninteractive apt-get install -y$optional ||
      echo "could not install$optional; the tests that need them are skipped"
  fi
  exit 0
fi
[ -n "$optional" ] && echo "optional, for the C# and Java compile tests:$optional"
[ -z "$missing" ] && exit 0
echo "missing:$missing; run as root:"
echo "  apt-get update && apt-get install -y$missing"
exit 1
