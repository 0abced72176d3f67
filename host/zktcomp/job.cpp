// Compile job: builds the reporter, reader, analyzer and generator in order and runs the phases.
#include "job.h"

#include <stdio.h>
#include <string.h>

#include <memory>

#include "analyzer.h"
#include "arena.h"
#include "buildout.h"
#include "errrep.h"
#include "genout.h"
#include "parser.h"

void FinalCallback::execute() {
  if (m_genout) m_genout->close();
  Replaced::discard();
  if (m_listOnly) return;
  for (unsigned int i = 0; i < m_files2remove.size(); i++) file_remove(m_files2remove[i].c_str());
  if (!m_depFile.empty()) file_remove(m_depFile.c_str());
}

void FinalCallback::dbnameFound(const mstring& name) {
  if (name.empty()) return;
  m_files2remove = GenOutput::listAllOutputs(m_outDir, name);
}

// The include directory defaults to the schema's directory. Indexes 0 and 1
// are never looked at, so "a/x.sch" and "/x.sch" give no directory: intended.
static mstring defaultIncludeDir(const mstring& inputFile) {
  const char* path = inputFile.c_str();
  for (int i = (int)strlen(path) - 1; i >= 2; i--) {
    if (path[i] == '/' || path[i] == '\\') return mstring(path, (size_t)i);
  }
  return mstring();
}

// What follows a successful generation: the list of -list-outputs, or the
// replacement of changed outputs and the dependency file, whose targets are
// the outputs and whose prerequisites the schema and its included files.
void Job::finishOutputs(IErrReporter& rep, const mvector<mstring>& created, const mvector<mstring>& included) {
  const mvector<mstring> outputs = distinctPaths(created);
  if (listOutputs) {
    for (unsigned int i = 0; i < outputs.size(); i++) printf("%s\n", outputs[i].c_str());
    return;
  }
  mstring failed;
  if (ifchanged && !Replaced::commit(failed)) rep.err("Cannot create output file " + failed);
  if (depFile.empty()) return;
  mvector<mstring> prereqs;
  prereqs.push_back(inputFile);
  for (unsigned int i = 0; i < included.size(); i++) prereqs.push_back(included[i]);
  if (!writeDepfile(depFile, outputs, distinctPaths(prereqs))) rep.err("Cannot create dependency file " + depFile);
}

bool Job::run() {
  try {
    return compile();
  } catch (const char* text) {
    IErrReporter::panic(text, false);
  }
}

bool Job::compile() {
  // Everything below allocates from the arena, which outlives it all and
  // gives the memory back in one piece.
  CompileArena arena;
  FILE* inp = fopen(inputFile.c_str(), "r");
  if (inp != nullptr) setvbuf(inp, nullptr, _IOFBF, (size_t)1 << 16);  // large reads of a large schema
  ErrReporter rep;
  rep.m_gccForm = diagGcc;
  if (inp == nullptr) {
    printf("Current directory is: %s\n", UT::currdir().c_str());
    rep.err(mstring("Cannot open \"") + inputFile + "\"");
  }
  rep.setDefaultFilename(inputFile);

  mstring incDir(includeDir);
  if (incDir.empty()) incDir = defaultIncludeDir(inputFile);
  mstring outDir(outputDir);

  FinalCallback cbk(outDir);
  cbk.m_depFile = depFile;
  cbk.m_listOnly = listOutputs;
  rep.setFinalCallback(&cbk);

  Parser parser(inp, inputFile, &rep, incDir, outDir);
  std::unique_ptr<Analyzer> owned(new Analyzer(parser, allCompact, genSQL, genPersistent, genTransient, genAtomic,
                                               &cbk, largeDatabase, target_sizeof_zkt_size_t,
                                               largeDatabase || nosort, nosort, wcharSize, suppress_api));
  Analyzer& analyzer = *owned;
  analyzer.analyze();
  analyzer.doChecks();
  analyzer.getSchema();

  fclose(inp);  // files reached through #include belong to the preprocessor

  GenOutput genout(analyzer.getSchema(), debug || genhpp, nosort, dumpxml, genhpp, gencs, genjava, gensmartptr,
                   &rep, outDir, csNamespace, javaPackage, cmode1, genXml, genJson, genSQL, largeDatabase,
                   target_sizeof_zkt_size_t, wcharSize, prefix, mergeable, dll);
  genout.m_listOnly = listOutputs;
  genout.m_notime = notime;
  genout.m_ifchanged = ifchanged;
  genout.init();
  cbk.m_genout = &genout;  // from here on a failure closes the streams first
  genout.run();
  if (werror && rep.m_nWarnings > 0) rep.err("warnings treated as errors");
  genout.close();
  finishOutputs(rep, genout.m_files_created, parser.m_prepr.m_opened);

  rep.setFinalCallback(nullptr);
  // The arena takes the model back with everything else: no walk over it.
  if (arena.reclaims()) (void)owned.release();
  return true;
}
