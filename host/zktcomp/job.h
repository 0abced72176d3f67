// Compile job: the file compiler's entry, which owns every object of one compilation.
#ifndef ZKTCOMP_JOB_H
#define ZKTCOMP_JOB_H

#include "ierrrep.h"

class GenOutput;

// Told by the analyzer as soon as "declare database {name};" has been read.
class IOnDbNameFound {
public:
  virtual void dbnameFound(const mstring& name) = 0;
  virtual ~IOnDbNameFound() {}
};

// What a failed compile undoes: it closes the generator's streams (once the
// generator exists) and removes the outputs of the database named so far,
// whether this run made them or not.
class FinalCallback : public IFinalCallback, public IOnDbNameFound {
public:
  mvector<mstring> m_files2remove;
  GenOutput* m_genout = nullptr;  // not owned; set once the generator's streams are open
  mstring m_outDir;
  mstring m_depFile;        // -M: removed as well
  bool m_listOnly = false;  // -list-outputs: a failure removes nothing

  explicit FinalCallback(const mstring& outDir) : m_outDir(outDir) {}
  void execute() override;
  void dbnameFound(const mstring& name) override;
  ~FinalCallback() override {}
};

// One compilation of one schema file. A plain record: the caller sets every
// field up to compver (they have no defaults) and calls run. The build
// integration fields behind them are off by default.
struct Job {
  bool debug;
  bool nosort;
  bool dumpxml;
  bool genhpp;
  bool gencs;
  bool genjava;
  bool gensmartptr;
  mstring inputFile;
  mstring outputDir;
  mstring includeDir;  // empty: derived from inputFile
  mstring csNamespace;
  mstring javaPackage;
  bool cmode1;
  bool allCompact;
  bool genXml;
  bool genJson;
  bool genSQL;
  bool genPersistent;
  bool genTransient;
  bool genAtomic;
  bool largeDatabase;
  int target_sizeof_zkt_size_t;
  int wcharSize;
  mvector<mstring> suppress_api;  // must outlive the analyzer
  bool prefix;
  bool mergeable;
  bool dll;
  bool revno;    // for the command-line front only
  bool compver;  // for the command-line front only

  mstring depFile;           // -M: make-style dependency file, written after a successful run
  bool listOutputs = false;  // -list-outputs: print the paths of the outputs, write nothing
  bool notime = false;       // -notime: no wall-clock time in the banners
  bool ifchanged = false;    // -ifchanged: replace only outputs whose content changed
  bool diagGcc = false;      // -diag gcc: diagnostics in the compilers' one-line form
  bool werror = false;       // -Werror: a warning fails the compilation

  // Returns true; every failure ends the process inside the reporter. A
  // generator branch that meets a case it has none for throws a character
  // string; run turns it into an internal stop (IErrReporter::panic).
  bool run();

private:
  bool compile();
  void finishOutputs(IErrReporter& rep, const mvector<mstring>& created, const mvector<mstring>& included);
};

#endif
