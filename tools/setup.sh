#!/bin/sh
# Installs what the build needs on a fresh Debian machine (as root), or says what to install.
missing=""
command -v cmake >/dev/null 2>&1 || missing="$missing cmake"
command -v g++ >/dev/null 2>&1 || missing="$missing g++"
command -v make >/dev/null 2>&1 || missing="$missing make"
[ -f /usr/include/gtest/gtest.h ] || missing="$missing libgtest-dev"
[ -z "$missing" ] && exit 0
if [ "$(id -u)" = "0" ]; then
  echo "installing:$missing"
  apt-get update && DEBIAN_FRONTEND=noninteractive apt-get install -y$missing || exit 1
else
  echo "missing:$missing; run as root:"
  echo "  apt-get update && apt-get install -y$missing"
  exit 1
fi
