// Test helpers: run code or the compiler binary in a child process and capture what it prints.
#ifndef ZKT_TESTS_PROC_UTIL_H
#define ZKT_TESTS_PROC_UTIL_H

#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

struct ProcResult {
  int status = -1;  // exit status, or -1 when the child died of a signal
  std::string out;
  std::string err;
};

namespace procutil {

inline std::string readAll(int fd) {
  std::string s;
  char buf[4096];
  ssize_t n;
  while ((n = read(fd, buf, sizeof buf)) > 0) s.append(buf, (size_t)n);
  return s;
}

// Runs fn in a forked child with stdout and stderr captured; the child exits
// with 0 if fn returns.
inline ProcResult runChild(const std::function<void()>& fn) {
  fflush(stdout);
  fflush(stderr);
  char outName[] = "/tmp/zkt_out_XXXXXX";
  char errName[] = "/tmp/zkt_err_XXXXXX";
  int outFd = mkstemp(outName);
  int errFd = mkstemp(errName);
  pid_t pid = fork();
  if (pid == 0) {
    dup2(outFd, 1);
    dup2(errFd, 2);
    fn();
    fflush(stdout);
    fflush(stderr);
    _exit(0);
  }
  int st = 0;
  waitpid(pid, &st, 0);
  ProcResult r;
  r.status = WIFEXITED(st) ? WEXITSTATUS(st) : -1;
  lseek(outFd, 0, SEEK_SET);
  lseek(errFd, 0, SEEK_SET);
  r.out = readAll(outFd);
  r.err = readAll(errFd);
  close(outFd);
  close(errFd);
  unlink(outName);
  unlink(errName);
  return r;
}

// Runs a program with arguments in directory dir (empty: the current one).
inline ProcResult runProgram(const std::vector<std::string>& argv, const std::string& dir = "") {
  return runChild([&] {
    if (!dir.empty() && chdir(dir.c_str()) != 0) _exit(127);
    std::vector<char*> args;
    for (const std::string& a : argv) args.push_back(const_cast<char*>(a.c_str()));
    args.push_back(nullptr);
    execv(args[0], args.data());
    _exit(127);
  });
}

// A fresh empty directory under /tmp.
inline std::string makeTempDir() {
  char name[] = "/tmp/zkt_dir_XXXXXX";
  return std::string(mkdtemp(name));
}

inline void writeFile(const std::string& path, const std::string& text) {
  FILE* f = fopen(path.c_str(), "wb");
  fwrite(text.data(), 1, text.size(), f);
  fclose(f);
}

inline bool fileExists(const std::string& path) { return access(path.c_str(), F_OK) == 0; }

inline std::string readFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream ss;
  ss << in.rdbuf();
  return ss.str();
}

// The names of the .sch files in dir.
inline std::vector<std::string> schemaFiles(const std::string& dir) {
  std::vector<std::string> r;
  for (const auto& e : std::filesystem::directory_iterator(dir))
    if (e.path().extension() == ".sch") r.push_back(e.path().filename().string());
  return r;
}

// The names in dir, sorted.
inline std::vector<std::string> listDir(const std::string& dir) {
  std::vector<std::string> r;
  for (const auto& e : std::filesystem::directory_iterator(dir)) r.push_back(e.path().filename().string());
  std::sort(r.begin(), r.end());
  return r;
}

// A fresh directory, removed with everything in it at the end.
struct TempDir {
  std::string path = makeTempDir();
  TempDir() = default;
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;
  ~TempDir() { std::filesystem::remove_all(path); }
  std::string write(const std::string& name, const std::string& text) const {
    writeFile(path + "/" + name, text);
    return path + "/" + name;
  }
};

// Writes text to x.sch in dir and runs the compiler there with opts and "x.sch".
inline ProcResult compileIn(const std::string& dir, const std::string& text, std::vector<std::string> opts = {}) {
  writeFile(dir + "/x.sch", text);
  opts.insert(opts.begin(), ZKT_COMPILER_PATH);
  opts.push_back("x.sch");
  return runProgram(opts, dir);
}

// The full path of a program found on PATH, or "" if there is none.
inline std::string findTool(const std::string& name) {
  const char* path = getenv("PATH");
  std::istringstream dirs(path ? path : "/usr/bin:/bin");
  for (std::string d; std::getline(dirs, d, ':');)
    if (!d.empty() && access((d + "/" + name).c_str(), X_OK) == 0) return d + "/" + name;
  return "";
}

}  // namespace procutil

#endif
