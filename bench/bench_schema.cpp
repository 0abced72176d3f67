// Schema benchmark: writes a seeded schema of N classes (and, with --peers, the same types in three peer
// schema languages), runs every case as a child process, alternating the cases round by round, and prints
// the median figures of each case with its growth from 1,000 to 10,000 classes.
//
//   zkt_bench_schema <compiler> <loader> [--peers]       run the benchmark
//   zkt_bench_schema --write <N> <dir>                    only write the schemas for N classes into dir
#include <dirent.h>
#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

namespace {

const int kRuns = 5;  // the median of five, after one warm-up run
const int kSizes[] = {1000, 10000};

// The five field kinds of a class and their nearest type in each language.
struct Kind {
  const char* ours;
  const char* flat;   // FlatBuffers
  const char* proto;  // Protocol Buffers 3
  const char* capnp;  // Cap'n Proto
};
const Kind kKinds[] = {
    {"unsigned<4>", "uint", "uint32", "UInt32"},
    {"char<16>", "Char16", "bytes", "Data"},
    {"signed<8>", "long", "int64", "Int64"},
    {"double", "double", "double", "Float64"},
    {"string", "string", "string", "Text"},
};
const int kFields = 10;

// A small LCG, so the schema is the same on every machine and library.
struct Rng {
  unsigned long long s;
  unsigned next(unsigned n) {
    s = s * 6364136223846793005ULL + 1442695040888963407ULL;
    return (unsigned)(s >> 33) % n;
  }
};

// Field kinds of every class: f0 unsigned<4>, f1..f4 the other four kinds in a seeded order, f5..f9 drawn
// from all five.
std::vector<std::vector<int>> fieldKinds(int classes) {
  Rng rng{20261123};
  std::vector<std::vector<int>> all(classes);
  for (std::vector<int>& k : all) {
    k = {0, 1, 2, 3, 4};
    for (int i = 4; i > 1; i--) std::swap(k[i], k[1 + rng.next(i)]);
    for (int i = 5; i < kFields; i++) k.push_back((int)rng.next(5));
  }
  return all;
}

bool writeFile(const std::string& path, const std::string& text) {
  FILE* f = fopen(path.c_str(), "w");
  if (f == nullptr) return false;
  const bool ok = fwrite(text.data(), 1, text.size(), f) == text.size();
  return fclose(f) == 0 && ok;
}

// A schema text: head, then per class open + "C<i> {", the text of every field and close.
template <class FieldText>
std::string schemaText(const std::vector<std::vector<int>>& kinds, const char* head, const char* open,
                       const char* close, FieldText field) {
  std::string s = head;
  for (size_t c = 0; c < kinds.size(); c++) {
    s += open + std::to_string(c) + " {";
    for (int i = 0; i < kFields; i++) s += field(kKinds[kinds[c][i]], std::to_string(i), i);
    s += close;
  }
  return s;
}

std::string ourSchema(const std::vector<std::vector<int>>& kinds) {
  return schemaText(kinds, "declare database bench;\n", "class C", " tree<f0> idx_f0; };\n",
                    [](const Kind& k, const std::string& n, int) { return std::string(" ") + k.ours + " f" + n + ";"; });
}

std::string flatSchema(const std::vector<std::vector<int>>& kinds) {
  return schemaText(kinds, "namespace bench;\nstruct Char16 { b:[ubyte:16]; }\n", "table C", " }\n",
                    [](const Kind& k, const std::string& n, int i) {
                      return " f" + n + ":" + k.flat + (i == 0 ? " (key);" : ";");
                    });
}

std::string protoSchema(const std::vector<std::vector<int>>& kinds) {
  return schemaText(kinds, "syntax = \"proto3\";\npackage bench;\n", "message C", " }\n",
                    [](const Kind& k, const std::string& n, int i) {
                      return std::string(" ") + k.proto + " f" + n + " = " + std::to_string(i + 1) + ";";
                    });
}

std::string capnpSchema(const std::vector<std::vector<int>>& kinds) {
  return schemaText(kinds, "@0xd6c3a2b1e0f49587;\n", "struct C", " }\n",
                    [](const Kind& k, const std::string& n, int) { return " f" + n + " @" + n + " :" + k.capnp + ";"; });
}

// One measured case: a command line run in its own output directory.
enum Role { kOurFile, kOurMemory, kPeerCode, kPeerBinary };
struct Case {
  std::string name;
  Role role;
  std::vector<std::string> args;  // {dir} and {in} stand for the output directory and the schema directory
  const char* schema;             // file name of the input in the schema directory
};

struct Sample {
  double wall = 0, cpu = 0;
  long peakKb = 0;
  double bytes = 0;
};

double dirBytes(const std::string& dir) {
  double total = 0;
  DIR* d = opendir(dir.c_str());
  if (d == nullptr) return 0;
  while (const dirent* e = readdir(d)) {
    struct stat st;
    if (e->d_name[0] != '.' && stat((dir + "/" + e->d_name).c_str(), &st) == 0 && S_ISREG(st.st_mode))
      total += (double)st.st_size;
  }
  closedir(d);
  return total;
}

std::string replaced(std::string s, const std::string& dir, const std::string& in) {
  for (const auto& p : {std::make_pair(std::string("{dir}"), dir), std::make_pair(std::string("{in}"), in)})
    for (size_t at; (at = s.find(p.first)) != std::string::npos;) s.replace(at, p.first.size(), p.second);
  return s;
}

bool run(const Case& c, const std::string& in, const std::string& out, Sample* s) {
  const std::string clean = "rm -rf '" + out + "' && mkdir -p '" + out + "'";
  if (system(clean.c_str()) != 0) return false;
  std::vector<std::string> args;
  for (const std::string& a : c.args) args.push_back(replaced(a, out, in));
  std::vector<char*> argv;
  for (std::string& a : args) argv.push_back(&a[0]);
  argv.push_back(nullptr);
  fflush(stdout);  // the child must not write the parent's buffered text again
  const auto t0 = std::chrono::steady_clock::now();
  const pid_t pid = fork();
  if (pid == 0) {
    if (chdir(in.c_str()) != 0 || setenv("PWD", in.c_str(), 1) != 0 || freopen("/dev/null", "w", stdout) == nullptr)
      _exit(127);
    execvp(argv[0], argv.data());
    _exit(127);
  }
  int status = 0;
  struct rusage ru;
  if (pid < 0 || wait4(pid, &status, 0, &ru) != pid) return false;
  s->wall = std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
  s->cpu = (double)ru.ru_utime.tv_sec + (double)ru.ru_stime.tv_sec +
           ((double)ru.ru_utime.tv_usec + (double)ru.ru_stime.tv_usec) / 1e6;
  s->peakKb = ru.ru_maxrss;
  s->bytes = dirBytes(out);
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

double median(std::vector<double> v) {
  std::sort(v.begin(), v.end());
  return v[v.size() / 2];
}

struct Figures {
  double wall = 0, cpu = 0, peakMb = 0, bytes = 0;
};

void printHeader() {
  printf("%-26s %6s %8s %8s %8s %10s %8s %8s %6s %6s\n", "case", "N", "wall s", "CPU s", "peak MB", "out bytes",
         "MB/s", "us/cls", "k wall", "k CPU");
}

void printRow(const Case& c, int n, const Figures& f, const Figures* small) {
  printf("%-26s %6d %8.3f %8.3f %8.1f ", c.name.c_str(), n, f.wall, f.cpu, f.peakMb);
  if (f.bytes > 0)
    printf("%10.0f %8.1f ", f.bytes, f.bytes / 1e6 / f.wall);
  else
    printf("%10s %8s ", "-", "-");
  printf("%8.1f ", f.wall / n * 1e6);
  const double decade = log((double)kSizes[1] / kSizes[0]);
  if (small != nullptr)
    printf("%6.2f %6.2f\n", log(f.wall / small->wall) / decade, log(f.cpu / small->cpu) / decade);
  else
    printf("%6s %6s\n", "", "");
}

int writeOnly(int classes, const std::string& dir) {
  const auto kinds = fieldKinds(classes);
  return writeFile(dir + "/bench.sch", ourSchema(kinds)) && writeFile(dir + "/bench.fbs", flatSchema(kinds)) &&
                 writeFile(dir + "/bench.proto", protoSchema(kinds)) && writeFile(dir + "/bench.capnp", capnpSchema(kinds))
             ? 0
             : 1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 4 && strcmp(argv[1], "--write") == 0) return writeOnly(atoi(argv[2]), argv[3]);
  if (argc < 3 || (argc == 4 && strcmp(argv[3], "--peers") != 0) || argc > 4) {
    fprintf(stderr, "usage: zkt_bench_schema <compiler> <loader> [--peers]\n"
                    "       zkt_bench_schema --write <classes> <dir>\n");
    return 2;
  }
  const bool peers = argc == 4;
  // The runs happen in a scratch directory: a relative path must be made absolute first.
  const auto absolute = [](const char* path) {
    char* full = realpath(path, nullptr);
    const std::string s = full != nullptr ? full : path;
    free(full);
    return s;
  };
  const std::string compiler = absolute(argv[1]), loader = absolute(argv[2]);
  std::vector<Case> cases = {
      {"zktcomp", kOurFile, {compiler, "-o", "{dir}", "bench.sch"}, "bench.sch"},
      {"zktcomp -hpp", kOurFile, {compiler, "-hpp", "-o", "{dir}", "bench.sch"}, "bench.sch"},
      {"in-memory load", kOurMemory, {loader, "bench.sch"}, "bench.sch"},
  };
  if (peers) {
    const std::vector<Case> more = {
        {"flatc --cpp", kPeerCode, {"flatc", "--cpp", "-o", "{dir}", "bench.fbs"}, "bench.fbs"},
        {"flatc -b --schema", kPeerBinary, {"flatc", "-b", "--schema", "-o", "{dir}", "bench.fbs"}, "bench.fbs"},
        {"protoc --cpp_out", kPeerCode, {"protoc", "--cpp_out={dir}", "bench.proto"}, "bench.proto"},
        {"protoc -o", kPeerBinary, {"protoc", "-o{dir}/bench.pb", "bench.proto"}, "bench.proto"},
        {"capnp compile -oc++", kPeerCode, {"capnp", "compile", "-oc++:{dir}", "bench.capnp"}, "bench.capnp"},
    };
    cases.insert(cases.end(), more.begin(), more.end());
  }

  char tmpl[] = "/tmp/zkt_bench_XXXXXX";
  if (mkdtemp(tmpl) == nullptr) return 2;
  const std::string root = tmpl;
  // figures[size][case]
  std::vector<std::vector<Figures>> figures;
  bool ok = true;
  for (int n : kSizes) {
    const std::string in = root + "/in" + std::to_string(n);
    mkdir(in.c_str(), 0755);
    const auto kinds = fieldKinds(n);
    ok = ok && writeFile(in + "/bench.sch", ourSchema(kinds));
    if (peers)
      ok = ok && writeFile(in + "/bench.fbs", flatSchema(kinds)) && writeFile(in + "/bench.proto", protoSchema(kinds)) &&
           writeFile(in + "/bench.capnp", capnpSchema(kinds));
    std::vector<std::vector<Sample>> samples(cases.size());
    // Round by round, every case once: a change of machine load hits all cases alike.
    for (int round = 0; ok && round <= kRuns; round++) {
      for (size_t i = 0; ok && i < cases.size(); i++) {
        Sample s;
        if (!run(cases[i], in, root + "/out", &s)) {
          fprintf(stderr, "%s failed on %d classes\n", cases[i].name.c_str(), n);
          ok = false;
        }
        if (round > 0) samples[i].push_back(s);  // round 0 warms up
      }
    }
    if (!ok) break;
    std::vector<Figures> row;
    for (const std::vector<Sample>& v : samples) {
      std::vector<double> wall, cpu, peak, bytes;
      for (const Sample& s : v) {
        wall.push_back(s.wall);
        cpu.push_back(s.cpu);
        peak.push_back((double)s.peakKb / 1024);
        bytes.push_back(s.bytes);
      }
      row.push_back({median(wall), median(cpu), median(peak), median(bytes)});
    }
    figures.push_back(row);
  }
  const std::string rm = "rm -rf " + root;
  if (system(rm.c_str()) != 0) fprintf(stderr, "could not remove %s\n", root.c_str());
  if (!ok) return 1;

  printf("Median of %d runs after a warm-up; cases alternate round by round. k: growth exponent of wall and CPU "
         "time (t ~ N^k) from %d to %d classes.\n",
         kRuns, kSizes[0], kSizes[1]);
  printHeader();
  for (size_t i = 0; i < cases.size(); i++)
    for (size_t z = 0; z < figures.size(); z++)
      printRow(cases[i], kSizes[z], figures[z][i], z > 0 ? &figures[0][i] : nullptr);
  if (!peers) return 0;

  // Ratios at the larger size: our file compiler against the code generators, our in-memory entry against
  // the binary-schema modes.
  const std::vector<Figures>& big = figures.back();
  printf("\nRatios at N = %d (ours / peer; below 1 means ours is faster or smaller)\n", kSizes[1]);
  printf("%-16s %-22s %8s %8s %8s\n", "ours", "peer", "wall", "CPU", "peak");
  for (size_t p = 0; p < cases.size(); p++) {
    if (cases[p].role != kPeerCode && cases[p].role != kPeerBinary) continue;
    for (size_t o = 0; o < cases.size(); o++) {
      const bool pair = (cases[p].role == kPeerCode && cases[o].name == "zktcomp") ||
                        (cases[p].role == kPeerBinary && cases[o].role == kOurMemory);
      if (!pair) continue;
      printf("%-16s %-22s %8.2f %8.2f %8.2f\n", cases[o].name.c_str(), cases[p].name.c_str(),
             big[o].wall / big[p].wall, big[o].cpu / big[p].cpu, big[o].peakMb / big[p].peakMb);
    }
  }
  return 0;
}
