// Schema benchmark: writes schemas of 1,000 and 10,000 classes, compiles each with the compiler binary, checks linear growth.
#include <stdio.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

namespace {

const int kRuns = 3;           // the median of three
const double kMaxGrowth = 12;  // t(10,000) may be at most this times t(1,000)

// One class of the benchmark schema.
const char kClass[] =
    "class C%d { unsigned<4> f0; signed<8> f1; double f2; float f3; signed<4> f4; unsigned<2> f5; date f6; "
    "time f7; unsigned<8> f8; signed<2> f9; tree<f0> idx_f0; };\n";

bool writeSchema(const std::string& path, int classes) {
  FILE* f = fopen(path.c_str(), "w");
  if (f == nullptr) return false;
  fputs("declare database bench;\n", f);
  for (int i = 0; i < classes; i++) fprintf(f, kClass, i);
  return fclose(f) == 0;
}

// Bytes of the files in dir.
double outputBytes(const std::string& dir) {
  double total = 0;
  for (const char* name : {"bench.h", "bench.c", "bench.hpp"}) {
    struct stat st;
    if (stat((dir + "/" + name).c_str(), &st) == 0) total += (double)st.st_size;
  }
  return total;
}

struct Run {
  double seconds = 0;
  long peakKb = 0;
  bool ok = false;
};

// Runs the compiler on schema once; the peak resident size is the child's own.
Run compileOnce(const std::string& schema, const std::string& out, bool hpp) {
  Run r;
  std::vector<std::string> args = {ZKT_COMPILER_PATH, "-o", out};
  if (hpp) args.push_back("-hpp");
  args.push_back(schema);
  std::vector<char*> argv;
  for (std::string& a : args) argv.push_back(&a[0]);
  argv.push_back(nullptr);
  fflush(stdout);  // the child must not write the parent's buffered text again
  const auto t0 = std::chrono::steady_clock::now();
  const pid_t pid = fork();
  if (pid == 0) {
    if (freopen("/dev/null", "w", stdout) == nullptr) _exit(127);
    execv(argv[0], argv.data());
    _exit(127);
  }
  int status = 0;
  struct rusage ru;
  if (pid < 0 || wait4(pid, &status, 0, &ru) != pid) return r;
  r.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
  r.peakKb = ru.ru_maxrss;
  r.ok = WIFEXITED(status) && WEXITSTATUS(status) == 0;
  return r;
}

struct Figures {
  double seconds = 0;
  double mbPerSecond = 0;
  long peakKb = 0;
  bool ok = false;
};

// Each option set writes into a directory of its own, so no file of another
// run counts in the output size.
Figures measure(const std::string& root, int classes, bool hpp) {
  Figures fig;
  const std::string dir = root + "/" + std::to_string(classes) + (hpp ? "hpp" : "plain");
  const std::string schema = dir + "/bench.sch";
  if (mkdir(dir.c_str(), 0755) != 0 || !writeSchema(schema, classes)) return fig;
  std::vector<double> times;
  for (int i = 0; i < kRuns; i++) {
    Run r = compileOnce(schema, dir, hpp);
    if (!r.ok) return fig;
    times.push_back(r.seconds);
    fig.peakKb = std::max(fig.peakKb, r.peakKb);
  }
  std::sort(times.begin(), times.end());
  fig.seconds = times[kRuns / 2];
  fig.mbPerSecond = outputBytes(dir) / 1e6 / fig.seconds;
  fig.ok = true;
  return fig;
}

}  // namespace

int main() {
  char tmpl[] = "/tmp/zkt_bench_XXXXXX";
  if (mkdtemp(tmpl) == nullptr) return 2;
  const std::string dir = tmpl;
  bool linear = true;
  printf("%-8s %8s %12s %10s %12s\n", "options", "classes", "median (s)", "MB/s", "peak RSS kB");
  for (bool hpp : {false, true}) {
    const char* opts = hpp ? "-hpp" : "(none)";
    Figures small = measure(dir, 1000, hpp);
    Figures large = measure(dir, 10000, hpp);
    if (!small.ok || !large.ok) {
      printf("%-8s compile failed\n", opts);
      return 1;
    }
    for (const auto& row : {std::make_pair(1000, small), std::make_pair(10000, large)})
      printf("%-8s %8d %12.3f %10.1f %12ld\n", opts, row.first, row.second.seconds, row.second.mbPerSecond,
             row.second.peakKb);
    const double growth = large.seconds / small.seconds;
    printf("%-8s growth t(10,000)/t(1,000) = %.1f (at most %.0f)\n", opts, growth, kMaxGrowth);
    if (growth > kMaxGrowth) linear = false;
  }
  const std::string rm = "rm -rf " + dir;
  if (system(rm.c_str()) != 0) printf("could not remove %s\n", dir.c_str());
  return linear ? 0 : 1;
}
