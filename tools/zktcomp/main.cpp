// Command-line front: fills a Job from the arguments and runs it.
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "genout.h"
#include "job.h"

static const char kUsage[] =
    "usage: zktcomp [options] <schema-file>\n"
    "options:\n"
    "  -o <dir>               output directory (default: current directory)\n"
    "  -I <dir>               directory searched by #include (default: the schema's directory)\n"
    "  -debug                 function bodies in the C file, prototypes in the header\n"
    "  -nosort                keep declared field order in layouts\n"
    "  -dumpxml               write {db}.xml, a dump of the schema\n"
    "  -hpp                   write the C++ wrapper {db}.hpp\n"
    "  -cs                    write C# class files\n"
    "  -java                  write Java class files\n"
    "  -smartptr              smart-pointer flavour of the C++ wrapper\n"
    "  -cs-namespace <ns>     namespace of the C# classes\n"
    "  -java-package <pkg>    package of the Java classes\n"
    "  -cmode1                alternative dictionary form\n"
    "  -compact               every class compact\n"
    "  -xml                   XML methods\n"
    "  -json                  JSON methods\n"
    "  -sql                   also refuse SQL reserved words\n"
    "  -persistent            classes persistent by default\n"
    "  -transient             classes transient by default\n"
    "  -atomic                classes atomic by default\n"
    "  -large                 large database\n"
    "  -size-t <4|8>          size of zkt_size_t on the target (default 8)\n"
    "  -wchar <2|4>           size of wchar_t on the target (default 4)\n"
    "  -suppress-api <name>   no access API for this struct or class (repeatable; \"\" means all)\n"
    "  -prefix                prefix generated names with the database name\n"
    "  -mergeable             generated code may be merged with another schema's\n"
    "  -dll                   decorate exported functions for a shared library\n"
    "  -M <file>              also write a make rule: the outputs depend on the schema and its includes\n"
    "  -list-outputs          print the paths of the files the options would generate, write nothing\n"
    "  -notime                no wall-clock time in the generated banners (reproducible output)\n"
    "  -ifchanged             replace only outputs whose content changed (others keep their time)\n"
    "  -diag <gcc|native>     form of diagnostics: file:line:pos: error: msg, or the default form\n"
    "  -Werror                a warning fails the compilation\n"
    "  -version               print the version and exit\n"
    "  -help, -h, --help      print this text and exit\n";

[[noreturn]] static void usageError(const char* reason, const char* what) {
  fprintf(stderr, "zktcomp: %s%s\n%s", reason, what, kUsage);
  exit(2);
}

struct BoolOption {
  const char* name;
  bool Job::*field;
};

// clang-format off
static const BoolOption kBoolOptions[] = {
  { "-debug",      &Job::debug },
  { "-nosort",     &Job::nosort },
  { "-dumpxml",    &Job::dumpxml },
  { "-hpp",        &Job::genhpp },
  { "-cs",         &Job::gencs },
  { "-java",       &Job::genjava },
  { "-smartptr",   &Job::gensmartptr },
  { "-cmode1",     &Job::cmode1 },
  { "-compact",    &Job::allCompact },
  { "-xml",        &Job::genXml },
  { "-json",       &Job::genJson },
  { "-sql",        &Job::genSQL },
  { "-persistent", &Job::genPersistent },
  { "-transient",  &Job::genTransient },
  { "-atomic",     &Job::genAtomic },
  { "-large",      &Job::largeDatabase },
  { "-prefix",     &Job::prefix },
  { "-mergeable",  &Job::mergeable },
  { "-dll",        &Job::dll },
  { "-list-outputs", &Job::listOutputs },
  { "-notime",     &Job::notime },
  { "-ifchanged",  &Job::ifchanged },
  { "-Werror",     &Job::werror },
};

struct TextOption {
  const char* name;
  mstring Job::*field;
};

static const TextOption kTextOptions[] = {
  { "-o",            &Job::outputDir },
  { "-I",            &Job::includeDir },
  { "-cs-namespace", &Job::csNamespace },
  { "-java-package", &Job::javaPackage },
  { "-M",            &Job::depFile },
};
// clang-format on

[[noreturn]] static void badValue(const char* opt, const char* v, const char* expected) {
  fprintf(stderr, "zktcomp: bad value \"%s\" for %s: expected %s\n%s", v, opt, expected, kUsage);
  exit(2);
}

// A number option accepts exactly one of two values.
static int sizeValue(const char* opt, const char* v, int a, int b) {
  if (strcmp(v, a == 4 ? "4" : "2") == 0) return a;
  if (strcmp(v, b == 8 ? "8" : "4") == 0) return b;
  badValue(opt, v, a == 4 ? "4 or 8" : "2 or 4");
}

// -diag takes the name of a diagnostic form; true for gcc.
static bool diagValue(const char* v) {
  if (strcmp(v, "gcc") != 0 && strcmp(v, "native") != 0) badValue("-diag", v, "gcc or native");
  return v[0] == 'g';
}

int main(int argc, char** argv) {
  Job job;
  for (const BoolOption& o : kBoolOptions) job.*o.field = false;
  job.revno = false;
  job.compver = false;
  job.target_sizeof_zkt_size_t = 8;
  job.wcharSize = 4;

  const char* schema = nullptr;
  for (int i = 1; i < argc; i++) {
    const char* a = argv[i];
    if (a[0] != '-') {
      if (schema) usageError("more than one schema file: ", a);
      schema = a;
      continue;
    }
    if (!strcmp(a, "-help") || !strcmp(a, "-h") || !strcmp(a, "--help")) {
      fputs(kUsage, stdout);
      return 0;
    }
    if (!strcmp(a, "-version")) {
      printf("Vantrel Schema Compiler version %d.%d, build %d, revision %s\n", ZKT_COMP_VER_MAJOR,
             ZKT_COMP_VER_MINOR, ZKT_COMP_BUILD_NUM, ZKT_COMP_REVISION);
      return 0;
    }
    bool known = false;
    for (const BoolOption& o : kBoolOptions) {
      if (!strcmp(a, o.name)) {
        job.*o.field = true;
        known = true;
      }
    }
    if (known) continue;
    bool needsValue =
        !strcmp(a, "-size-t") || !strcmp(a, "-wchar") || !strcmp(a, "-suppress-api") || !strcmp(a, "-diag");
    for (const TextOption& o : kTextOptions) needsValue = needsValue || !strcmp(a, o.name);
    if (!needsValue) usageError("unknown option ", a);
    if (i + 1 >= argc) usageError("missing value for ", a);
    const char* v = argv[++i];
    if (!strcmp(a, "-size-t"))
      job.target_sizeof_zkt_size_t = sizeValue(a, v, 4, 8);
    else if (!strcmp(a, "-wchar"))
      job.wcharSize = sizeValue(a, v, 2, 4);
    else if (!strcmp(a, "-diag"))
      job.diagGcc = diagValue(v);
    else if (!strcmp(a, "-suppress-api"))
      job.suppress_api.push_back(mstring(v));
    else
      for (const TextOption& o : kTextOptions)
        if (!strcmp(a, o.name)) job.*o.field = mstring(v);
  }
  if (!schema) usageError("no schema file given", "");
  job.inputFile = mstring(schema);

  if (job.run() && !job.listOutputs) UT::finishComp(true);
  return 0;
}
