// Console reporter, message translation and the process-ending paths.
#include "errrep.h"

#include <stdlib.h>
#include <string.h>

#include "buildout.h"

mstring translateError(const mstring& txt, const mstring& p1, const mstring& p2, const mstring& p3,
                       const mstring& p4) {
  // Placeholders count non-empty arguments: an empty p1 shifts p2 to "#1".
  const mstring* given[4] = {&p1, &p2, &p3, &p4};
  const mstring* args[4];
  int nargs = 0;
  for (const mstring* a : given)
    if (!a->empty()) args[nargs++] = a;

  mstring text;
  for (const char** row = ZKT_MESSAGES; *row; row++) {
    mvector<mstring> parts = UT::splitName(mstring(*row), '=');
    if (parts.size() != 2) continue;
    if (strcmp(UT::trim(parts[0]).c_str(), txt.c_str()) == 0) {
      text = UT::trim(parts[1]);
      break;
    }
  }
  if (text.empty()) text = txt;  // an unknown key is its own message
  if (nargs == 0) return text;    // placeholders stay visible

  // "#" and a digit is a placeholder; "#0" and numbers beyond the list vanish.
  mstring out;
  const char* s = text.c_str();
  const char* from = s;
  for (; *s; s++) {
    if (s[0] == '#' && s[1] >= '0' && s[1] <= '9') {
      out.add(from, (size_t)(s - from));
      int n = s[1] - '0';
      if (n >= 1 && n <= nargs) out += *args[n - 1];
      s++;
      from = s + 1;
    }
  }
  out.add(from, strlen(from));
  return out;
}

void final(IFinalCallback* cbk) {
  if (cbk) cbk->execute();
  UT::finishComp(false);
  exit(-1);
}

void (*IErrReporter::s_panicHook)(const mstring& msg, bool normalError) = nullptr;

void IErrReporter::panic(const mstring& msg, bool normalError) {
  if (s_panicHook) s_panicHook(msg, normalError);
  IOutStream::drainOpenFiles();  // the outputs keep what was written before the stop
  Replaced::discard();  // no temporary of -ifchanged outlives the process
  fprintf(stderr, "%s: %s\n", normalError ? "error" : "internal error", msg.c_str());
  exit(-1);
}

// Positions are shown one above the value passed; a place with no line
// prints nothing, and two blanks stand before "line" (intended).
void ErrReporter::printPlace(const mstring& filename, int line, int pos) {
  if (!filename.empty())
    fprintf(stderr, "File %s; ", filename.c_str());
  else if (!m_defaultFileName.empty())
    fprintf(stderr, "File %s; ", m_defaultFileName.c_str());
  if (line >= 0) {
    fprintf(stderr, " line %d", line);
    if (pos < 1)
      fprintf(stderr, ": ");
    else
      fprintf(stderr, ", position %d: ", pos + 1);
  }
}

// A place as compilers write it: the file (or the default name), the line
// and the position as the native form shows them, each behind a colon.
void ErrReporter::printGcc(const char* kind, const mstring& filename, int line, int pos, const mstring& text) {
  const mstring& file = filename.empty() ? m_defaultFileName : filename;
  mstring place;
  if (!file.empty()) {
    place = file + ":";
    if (line >= 0) place += UT::n2s(line) + ":";
    if (line >= 0 && pos >= 1) place += UT::n2s(pos + 1) + ":";
    place += " ";
  }
  fprintf(stderr, "%s%s: %s\n", place.c_str(), kind, text.c_str());
}

void ErrReporter::processError(const mstring& txt, const mstring& filename, int line, int pos) {
  m_nErr++;
  if (m_gccForm) {
    printGcc("error", filename, line, pos, txt);
    final(m_cbk);
  }
  printPlace(filename, line, pos);
  fprintf(stderr, "error: %s\n\n", txt.c_str());
  final(m_cbk);
}

void ErrReporter::err(const mstring& txt) {
  mstring e;
  processError(translateError(txt, e, e, e, e), e, -1, 0);
}

void ErrReporter::err1(const mstring& txt, const mstring& p1, const mstring& filename, int line, int pos) {
  mstring e;
  processError(translateError(txt, p1, e, e, e), filename, line, pos);
}

void ErrReporter::err2(const mstring& txt, const mstring& p1, const mstring& p2, const mstring& filename,
                       int line, int pos) {
  mstring e;
  processError(translateError(txt, p1, p2, e, e), filename, line, pos);
}

void ErrReporter::err3(const mstring& txt, const mstring& p1, const mstring& p2, const mstring& p3,
                       const mstring& filename, int line, int pos) {
  mstring e;
  processError(translateError(txt, p1, p2, p3, e), filename, line, pos);
}

void ErrReporter::err4(const mstring& txt, const mstring& p1, const mstring& p2, const mstring& p3,
                       const mstring& p4, const mstring& filename, int line, int pos) {
  processError(translateError(txt, p1, p2, p3, p4), filename, line, pos);
}

void ErrReporter::err(const mstring& txt, const mstring& filename, int line, int pos) {
  mstring e;
  processError(translateError(txt, e, e, e, e), filename, line, pos);
}

void ErrReporter::warning(const mstring& txt) { warning(txt, mstring(), -1, 0); }

// Deliberately plainer than the other warnings: no place, no blank line.
void ErrReporter::warning1(const mstring& txt, const mstring& p1) {
  mstring e;
  m_nWarnings++;
  if (m_gccForm)
    printGcc("warning", e, -1, 0, translateError(txt, p1, e, e, e));
  else
    fprintf(stderr, "warning: %s\n", translateError(txt, p1, e, e, e).c_str());
}

void ErrReporter::warning(const mstring& txt, const mstring& filename, int line, int pos) {
  mstring e;
  m_nWarnings++;
  if (m_gccForm) {
    printGcc("warning", filename, line, pos, translateError(txt, e, e, e, e));
    return;
  }
  printPlace(filename, line, pos);
  fprintf(stderr, "warning: %s\n\n", translateError(txt, e, e, e, e).c_str());
}
