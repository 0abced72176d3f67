// Hostile inputs and outputs for the file compiler: each run ends with the compiler's own message and
// status, within a time limit and (outside the sanitizer build) a memory limit, and leaves no output
// of the database behind when it fails.
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <thread>

#include "proc_util.h"
#include "sanitized.h"

namespace {

const char kSchema[] = "declare database h;\nclass a { signed<4> x; tree<x> byx; };\n";

// The compiler on args in dir, killed after 60 s, its address space capped at 2 GB.
ProcResult compile(const std::vector<std::string>& args, const std::string& dir) {
  return procutil::runChild([&] {
    alarm(60);
    if (!ZKT_SANITIZED) {  // the sanitizers reserve terabytes of address space
      const rlimit limit{2UL << 30, 2UL << 30};
      setrlimit(RLIMIT_AS, &limit);
    }
    if (chdir(dir.c_str()) != 0) _exit(127);
    std::vector<char*> argv{const_cast<char*>(ZKT_COMPILER_PATH)};
    for (const std::string& a : args) argv.push_back(const_cast<char*>(a.c_str()));
    argv.push_back(nullptr);
    execv(argv[0], argv.data());
    _exit(127);
  });
}

std::string repeat(const std::string& s, size_t n) {
  std::string r;
  r.reserve(s.size() * n);
  for (size_t i = 0; i < n; i++) r += s;
  return r;
}

// A tmpfs mounted on dir (read-only, or of 16 KB), or an empty text when
// this process can't mount one; unmounted when the test ends.
struct Mount {
  std::string dir;
  explicit Mount(const std::string& d, bool readOnly) {
    mkdir(d.c_str(), 0755);
    if (mount("tmpfs", d.c_str(), "tmpfs", readOnly ? MS_RDONLY : 0, "size=16k") != 0) return;
    dir = d;
    if (readOnly) return;
    FILE* f = fopen((d + "/filler").c_str(), "wb");  // full up to the last block
    const std::string block(4096, 'x');
    while (f != nullptr && fwrite(block.data(), 1, block.size(), f) == block.size() && fflush(f) == 0) {
    }
    if (f != nullptr) fclose(f);
  }
  ~Mount() {
    if (!dir.empty()) umount(dir.c_str());
  }
};

struct Case {
  const char* name;
  std::function<std::vector<std::string>(const std::string& dir)> setup;  // the arguments
  int status;
  const char* message;  // found in standard error
};

TEST(Hostile, InputsAndOutputs) {
  const Case cases[] = {
      {"directory",
       [](const std::string& d) {
         mkdir((d + "/in.sch").c_str(), 0755);
         return std::vector<std::string>{"in.sch"};
       },
       255, "schema name is not defined"},
      {"binary with NUL bytes",
       [](const std::string& d) {
         procutil::writeFile(d + "/in.sch", std::string("declare\0database\0\1\2\377 h;\n\0class", 30));
         return std::vector<std::string>{"in.sch"};
       },
       255, "File in.sch"},
      {"200 MB of one line",
       [](const std::string& d) {
         procutil::writeFile(d + "/in.sch", "declare database h; " + repeat("abcdefgh", 25u << 20));
         return std::vector<std::string>{"in.sch"};
       },
       255, "File in.sch"},
      {"1 MB identifier",
       [](const std::string& d) {
         procutil::writeFile(d + "/in.sch", "declare database h;\nclass " + repeat("a", 1u << 20) + " { signed<4> x; };\n");
         return std::vector<std::string>{"in.sch"};
       },
       255, "File in.sch"},
      {"100,000 nested #ifdef",
       [](const std::string& d) {
         procutil::writeFile(d + "/in.sch", "#define A\n" + repeat("#ifdef A\n", 100000) + kSchema +
                                                repeat("#endif\n", 100000) + "class b { x y; };\n");
         return std::vector<std::string>{"in.sch"};
       },
       255, "File in.sch"},
      {"#include of itself",
       [](const std::string& d) {
         procutil::writeFile(d + "/in.sch", std::string("#include \"in.sch\"\n") + kSchema);
         return std::vector<std::string>{"in.sch"};
       },
       255, "recursion in #include"},
      {"#include of itself through a second file",
       [](const std::string& d) {
         procutil::writeFile(d + "/in.sch", std::string("#include \"two.sch\"\n") + kSchema);
         procutil::writeFile(d + "/two.sch", "#include \"in.sch\"\n");
         return std::vector<std::string>{"in.sch"};
       },
       255, "recursion in #include"},
  };
  for (const Case& c : cases) {
    const procutil::TempDir dir;
    const ProcResult r = compile(c.setup(dir.path), dir.path);
    EXPECT_EQ(r.status, c.status) << c.name << "\n" << r.err.substr(0, 500);
    EXPECT_NE(r.err.find(c.message), std::string::npos) << c.name << "\n" << r.err.substr(0, 500);
    EXPECT_FALSE(procutil::fileExists(dir.path + "/h.h")) << c.name;
  }
}

// A FIFO is read like a file once its writer opens it.
TEST(Hostile, Fifo) {
  const procutil::TempDir dir;
  const std::string fifo = dir.path + "/in.sch";
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  std::thread writer([&] { procutil::writeFile(fifo, "declare database h;\nclass a { nothing x; };\n"); });
  const ProcResult r = compile({"in.sch"}, dir.path);
  writer.join();
  EXPECT_EQ(r.status, 255) << r.err;
  EXPECT_NE(r.err.find("File in.sch"), std::string::npos) << r.err;
  EXPECT_FALSE(procutil::fileExists(dir.path + "/h.h"));
}

// A read-only output directory stops at the first file; a full file system
// fails at the end of the writing and the outputs are removed.
TEST(Hostile, OutputDirectoryReadOnlyOrFull) {
  const procutil::TempDir dir;
  dir.write("in.sch", kSchema);
  for (const bool readOnly : {true, false}) {
    const Mount m(dir.path + (readOnly ? "/ro" : "/full"), readOnly);
    if (m.dir.empty()) {
      printf("skipped: cannot mount a tmpfs here (%s)\n", readOnly ? "read-only" : "full");
      continue;
    }
    const ProcResult r = compile({"-o", m.dir, "-hpp", "in.sch"}, dir.path);
    EXPECT_EQ(r.status, 255) << r.err;
    EXPECT_NE(r.err.find(readOnly ? "Cannot open file" : "Cannot write output files: No space left on device"),
              std::string::npos)
        << r.err;
    EXPECT_FALSE(procutil::fileExists(m.dir + "/h.h"));
    EXPECT_FALSE(procutil::fileExists(m.dir + "/h.hpp"));
  }
}

}  // namespace
