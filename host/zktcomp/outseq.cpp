// Sequence field accessors and the top-N functions of a struct's unique keys.
#include "genout.h"

namespace {

// When a sequence function is written.
enum SeqWhen {
  SEQ_ALWAYS,
  SEQ_ORDERED,   // the sequence has an order
  SEQ_IN_CLASS,  // the accessors are those of a class
};

// One sequence function: its C function and, unless decl is null, its C++
// member; def follows "inline" on the hpp tail.
struct SeqFunction {
  const char* suffix;
  SeqWhen when;
  const char* params;
  const char* call;
  const char* decl;
  const char* def;
};

// clang-format off
const char kSeqW[]    = "(zkt_objhandle_h)handle, {uoff}, {coff}";
const char kSeqS[]    = "Sequence<{seqhpp}>";
const char kSeqBody[] = "{ return {call}; }{nl}{nl}";
const char kInline[]  = "inline";

// _join has no {seqarg}, _count no element suffix, _first and _last no field
// number; _search's and _join's definitions start with one blank, the others
// with two: all intended.
const SeqFunction kSeqFunctions[] = {
  { "_first", SEQ_ALWAYS,
    "({struct} *handle, {seqtype}* val)",
    "zkt_w_seq_first_{seqfn}({w}, {cast}val{seqarg})",
    "  ZKT_RET {field}_first({seqtype}* val);{nl}",
    "  ZKT_RET {struct}::{field}_first({seqtype}* val){nl}{ return {db}::{struct}_{field}_first(this, val); }{nl}{nl}" },
  { "_last", SEQ_ALWAYS,
    "({struct} *handle, {seqtype}* val)",
    "zkt_w_seq_last_{seqfn}({w}, {cast}val{seqarg})",
    "  ZKT_RET {field}_last({seqtype}* val);{nl}",
    "  ZKT_RET {struct}::{field}_last({seqtype}* val){nl}{ return {db}::{struct}_{field}_last(this, val); }{nl}{nl}" },
  { "_append", SEQ_ALWAYS,
    "({struct} *handle, {seqtype} const* vals, zkt_size_t n_items)",
    "zkt_w_seq_append_{seqfn}({w}, {no}, {cast}vals, n_items, {order}{seqarg}, 0)",
    "  ZKT_RET {field}_append({seqtype} const* vals, zkt_size_t n_items, zkt_bitmap_word_t const* null_bitmap = NULL);{nl}",
    "  ZKT_RET {struct}::{field}_append({seqtype} const* vals, zkt_size_t n_items, zkt_bitmap_word_t const* null_bitmap){nl}{ return {db}::{struct}_{field}_append_nullable(this, vals, n_items, null_bitmap); }{nl}{nl}" },
  { "_append_nullable", SEQ_ALWAYS,
    "({struct} *handle, {seqtype} const* vals, zkt_size_t n_items, zkt_bitmap_word_t const* null_bitmap)",
    "zkt_w_seq_append_{seqfn}({w}, {no}, {cast}vals, n_items, {order}{seqarg}, null_bitmap)",
    nullptr, nullptr },
  { "_insert", SEQ_ALWAYS,
    "({struct} *handle, zkt_seq_no_t pos, {seqtype} const* vals, zkt_size_t n_items)",
    "zkt_w_seq_insert_{seqfn}({w}, {no}, pos, {cast}vals, n_items, {order}{seqarg}, 0)",
    "  ZKT_RET {field}_insert(zkt_seq_no_t pos, {seqtype} const* vals, zkt_size_t n_items, zkt_bitmap_word_t const* null_bitmap = NULL);{nl}",
    "  ZKT_RET {struct}::{field}_insert(zkt_seq_no_t pos, {seqtype} const* vals, zkt_size_t n_items, zkt_bitmap_word_t const* null_bitmap){nl}{ return {db}::{struct}_{field}_insert_nullable(this, pos, vals, n_items, null_bitmap); }{nl}{nl}" },
  { "_insert_nullable", SEQ_ALWAYS,
    "({struct} *handle, zkt_seq_no_t pos, {seqtype} const* vals, zkt_size_t n_items, zkt_bitmap_word_t const* null_bitmap)",
    "zkt_w_seq_insert_{seqfn}({w}, {no}, pos, {cast}vals, n_items, {order}{seqarg}, null_bitmap)",
    nullptr, nullptr },
  { "_delete", SEQ_ALWAYS,
    "({struct} *handle, zkt_seq_no_t from, zkt_seq_no_t till)",
    "zkt_w_seq_delete_{seqfn}({w}, {no}, from, till, {order}{seqarg})",
    "  ZKT_RET {field}_delete(zkt_seq_no_t from, zkt_seq_no_t till);{nl}",
    "  ZKT_RET {struct}::{field}_delete(zkt_seq_no_t from, zkt_seq_no_t till){nl}{ return {db}::{struct}_{field}_delete(this, from, till); }{nl}{nl}" },
  { "_search", SEQ_ORDERED,
    "({struct} *handle, zkt_seq_iterator_h iterator, {seqtype} low, zkt_seq_boundary_kind_t low_boundary, {seqtype} high, zkt_seq_boundary_kind_t high_boundary)",
    "zkt_w_seq_search_{seqfn}({w}, iterator, low, low_boundary, high, high_boundary, {order}{seqarg})",
    "  ZKT_RET {field}_search({S} &seq, {seqtype} low, zkt_seq_boundary_kind_t low_boundary, {seqtype} high, zkt_seq_boundary_kind_t high_boundary);{nl}",
    " ZKT_RET {struct}::{field}_search({S} &seq, {seqtype} low, zkt_seq_boundary_kind_t low_boundary, {seqtype} high, zkt_seq_boundary_kind_t high_boundary){nl}{ return {db}::{struct}_{field}_search(this, seq.iter, low, low_boundary, high, high_boundary); }{nl}{nl}" },
  { "_join", SEQ_ORDERED,
    "({struct} *handle, zkt_seq_iterator_h result, zkt_seq_iterator_h join_with)",
    "zkt_w_seq_join_{seqfn}({w}, result, join_with, {order})",
    "  ZKT_RET {field}_join(Sequence<zkt_seq_no_t>& result, {S} const& joinWith);{nl}",
    " ZKT_RET {struct}::{field}_join(Sequence<zkt_seq_no_t>& result, {S} const& joinWith){nl}{ return {db}::{struct}_{field}_join(this, result.iter, joinWith.iter); }{nl}{nl}" },
  { "_count", SEQ_ALWAYS,
    "({struct} *handle, zkt_seq_no_t* count)",
    "zkt_w_seq_count({w}, count)",
    "  ZKT_RET {field}_count(zkt_seq_no_t& count);{nl}",
    "  ZKT_RET {struct}::{field}_count(zkt_seq_no_t& count){nl}{ return {db}::{struct}_{field}_count(this, &count); }{nl}{nl}" },
  { "_map", SEQ_ALWAYS,
    "({struct} *handle, zkt_seq_iterator_h dst_iterator, zkt_seq_iterator_h map_iterator)",
    "zkt_w_seq_map_{seqfn}({w}, dst_iterator, map_iterator{seqarg})",
    "  {S} {field}_map(Sequence<zkt_seq_no_t> const& mapSeq);{nl}",
    "  {S} {struct}::{field}_map(Sequence<zkt_seq_no_t> const& mapSeq){nl}{ {S} resSeq; ZKT_CPP_CHECK({db}::{struct}_{field}_map(this, resSeq.iter, mapSeq.iter)); return resSeq; }{nl}{nl}" },
  { "_subseq", SEQ_ALWAYS,
    "({struct} *handle, zkt_seq_iterator_h iterator, zkt_seq_no_t from, zkt_seq_no_t till)",
    "zkt_w_seq_subseq_{seqfn}({w}, iterator, from, till{seqarg})",
    "  {S} {field}_subseq(zkt_seq_no_t from, zkt_seq_no_t till);{nl}",
    "  {S} {struct}::{field}_subseq(zkt_seq_no_t from, zkt_seq_no_t till){nl}{ {S} seq; ZKT_CPP_CHECK({db}::{struct}_{field}_subseq(this, seq.iter, from, till)); return seq; }{nl}{nl}" },
  { "_iterator", SEQ_ALWAYS,
    "({struct} *handle, zkt_seq_iterator_h iterator)",
    "zkt_w_seq_subseq_{seqfn}({w}, iterator, 0, ZKT_SEQ_INFINITY{seqarg})",
    "  {S} {field}_iterator();{nl}",
    "  {S} {struct}::{field}_iterator(){nl}{ {S} seq; ZKT_CPP_CHECK({db}::{struct}_{field}_iterator(this, seq.iter)); return seq; }{nl}{nl}" },
  { "_from_cursor", SEQ_IN_CLASS,
    "(zkt_trans_h trans, zkt_seq_iterator_h iterator, zkt_cursor_h cursor)",
    "zkt_w_seq_from_cursor_{seqfn}(trans, {uoff}, {coff}, {cc}, iterator, cursor{seqarg})",
    "  static ZKT_RET {field}_from_cursor(zkt_trans_h, {S}& seq, zkt_cursor_h cursor);{nl}",
    "  ZKT_RET {struct}::{field}_from_cursor(zkt_trans_h trans, {S}& seq, zkt_cursor_h cursor){nl}{ return {db}::{struct}_{field}_from_cursor(trans, seq.iter, cursor); }{nl}{nl}" },
  { "_project", SEQ_ALWAYS,
    "({struct} *handle, zkt_seq_iterator_h dst, zkt_seq_iterator_h src)",
    "zkt_w_seq_project_{seqfn}({w}, dst, src{seqarg})",
    "  {S} {field}_project(GenericSequence const& seq);{nl}",
    "  {S} {struct}::{field}_project(GenericSequence const& seq){nl}{ {S} result; ZKT_CPP_CHECK({db}::{struct}_{field}_project(this, result.iter, seq.iter)); return result; }{nl}{nl}" },
  { "_store", SEQ_ALWAYS,
    "({struct} *handle, zkt_seq_iterator_h src)",
    "zkt_w_seq_store_{seqfn}({w}, {no}, src, {order}{seqarg})",
    "  ZKT_RET {field}_store({S} const& src);{nl}",
    "  ZKT_RET {struct}::{field}_store({S} const& src){nl}{ return {db}::{struct}_{field}_store(this, src.iter); }{nl}{nl}" },
};

// The element texts by element category: wrapper suffix, C type, extra
// argument and C++ element; null means the element's own type name.
struct SeqElement {
  const char* seqfn;
  const char* seqtype;
  const char* seqarg;
  const char* seqhpp;
};
const SeqElement kSeqStruct = { "char", "{ename}_fixed", ", sizeof({ename}_fixed)", " Char<{es}> " };
const SeqElement kSeqChars  = { "char", "char",          ", {es}",                  " Char<{es}> " };
// clang-format on

const char kNoOrder[] = "ZKT_SEQ_NO_ORDER";
const char kMergeableCode[] = "dict.class_code_origin + ";
const int kSeqMaxCharSize = 32;  // the runtime's ZKT_SEQ_MAX_CHAR_SIZE

// The element texts of a struct and a character element, or null.
const SeqElement* seqElement(TypeCategory cat) {
  switch (cat) {
    case ET_STRUCT:
      return &kSeqStruct;
    case ET_CHARS:
    case ET_BINARY:
      return &kSeqChars;
    case ET_SIMPLE:
    case ET_AUTOID:
    case ET_STRING:
    case ET_VARBINARY:
    case ET_UNICODE_CHARS:
    case ET_UNICODE_STRING:
    case ET_WIDE_CHARS:
    case ET_WCHAR_STRING:
    case ET_BLOB:
    case ET_REF:
    case ET_DIRECT_STRUCT:
    case ET_SEQUENCE:
    case ET_VERSION:
    case ET_AUTOOID:
      return nullptr;
  }
  return nullptr;
}

// The variants of the top-N function.
enum TopKind { TOP_SCALAR, TOP_FIXED, TOP_VAR };
enum TopMask { T_SCALAR = 1, T_FIXED = 2, T_VAR = 4, T_ALL = 7 };

// clang-format off
const char* const kTopParams[] = {
  "(zkt_trans_h t, zkt_cursor_h cursor, /*INOUT*/zkt_size_t* n, /*OUT*/{ctype}* keys, /*OUT*/double* aggregates, ZKT_RET (*aggregate)(zkt_trans_h t, {struct}* handle, /*OUT*/double* result, void* ctx), ZKT_RET (*filter)(zkt_trans_h t, zkt_cursor_h cursor, void* ctx), void* ctx)",
  " (zkt_trans_h t, zkt_cursor_h cursor, /*IN-OUT*/zkt_size_t* n, /*OUT*/{ch} keys[][{usize}], /*OUT*/double* aggregates, ZKT_RET (*aggregate)(zkt_trans_h t, {struct}* handle, /*OUT*/double* result, void* ctx), ZKT_RET (*filter)(zkt_trans_h t, zkt_cursor_h cursor, void* ctx), void* ctx)",
  " (zkt_trans_h t, zkt_cursor_h cursor, /*IN-OUT*/zkt_size_t* n, /*OUT*/{ch}** keys, uint2 max_key_len, {ch}* buf, /*OUT*/double* aggregates, ZKT_RET (*aggregate)(zkt_trans_h t, {struct}* handle, /*OUT*/double* result, void* ctx), ZKT_RET (*filter)(zkt_trans_h t, zkt_cursor_h cursor, void* ctx), void* ctx)",
};
const char kFromCursorProto[] = " ( zkt_trans_h t, zkt_cursor_h c, /*OUT*/ {struct} *handle );{nl}";

// The body of a top-N function, line by line, with the variants that have
// the line. The filter's switch and if are closed after "return rc;" so that
// the text compiles; the default case returns rc, not the filter's answer
// (intended). The scalar variant sets *n before closing the cursor, the
// character ones after.
struct TopLine {
  int variants;
  const char* text;
};
const TopLine kTopLines[] = {
  { T_ALL,              "    ZKT_RET rc;" },
  { T_ALL,              "    zkt_size_t max = *n;" },
  { T_ALL,              "    zkt_size_t top = 0;" },
  { T_ALL,              "    {struct} handle;" },
  { T_ALL,              "    double value;" },
  { T_ALL,              "    do {" },
  { T_ALL,              "        if (filter) { " },
  { T_ALL,              "            switch (filter(t, cursor, ctx)) { " },
  { T_ALL,              "              case ZKT_S_OK:" },
  { T_ALL,              "                break;" },
  { T_ALL,              "              case ZKT_S_NOTFOUND:" },
  { T_ALL,              "                goto skip;" },
  { T_ALL,              "              case ZKT_S_CURSOR_END:" },
  { T_ALL,              "                *n = top;" },
  { T_ALL,              "                zkt_cursor_close(t, cursor);" },
  { T_ALL,              "                return ZKT_S_OK;" },
  { T_ALL,              "              default:" },
  { T_ALL,              "                return rc;" },
  { T_ALL,              "            }" },
  { T_ALL,              "        }" },
  { T_ALL,              "        rc = {struct}_from_cursor(t, cursor, &handle);" },
  { T_ALL,              "        if (rc != ZKT_S_OK) { " },
  { T_ALL,              "            return rc;" },
  { T_ALL,              "        }" },
  { T_ALL,              "        rc = aggregate(t, &handle, &value, ctx);" },
  { T_ALL,              "        if (rc == ZKT_S_NOTFOUND) { " },
  { T_ALL,              "            goto skip;" },
  { T_ALL,              "        } else if (rc != ZKT_S_OK) { " },
  { T_ALL,              "            return rc;" },
  { T_ALL,              "        }" },
  { T_ALL,              "        if (top < max || aggregates[top-1] < value) { " },
  { T_ALL,              "            zkt_size_t l = 0, r = top;" },
  { T_VAR,              "            uint2 len;" },
  { T_VAR,              "            {ch}* dst;" },
  { T_ALL,              "            while (l < r) { " },
  { T_ALL,              "                zkt_size_t m = (l + r) >> 1;" },
  { T_ALL,              "                if (aggregates[m] > value) { " },
  { T_ALL,              "                    l = m+1;" },
  { T_ALL,              "                } else { " },
  { T_ALL,              "                    r = m;" },
  { T_ALL,              "                }" },
  { T_ALL,              "            }" },
  { T_ALL,              "            if (top < max) { " },
  { T_ALL,              "                top += 1;" },
  { T_VAR,              "                dst = buf;" },
  { T_VAR,              "                buf += max_key_len;" },
  { T_VAR,              "            } else {" },
  { T_VAR,              "                dst = keys[top-1];" },
  { T_ALL,              "            }" },
  { T_SCALAR | T_VAR,   "            zkt_memmove(&keys[r+1], &keys[r], (top-r-1)*sizeof(*keys));" },
  { T_FIXED,            "            zkt_memmove(keys[r+1], keys[r], (top-r-1)*sizeof(*keys));" },
  { T_ALL,              "            zkt_memmove(&aggregates[r+1], &aggregates[r], (top-r-1)*sizeof(*aggregates));" },
  { T_ALL,              "            aggregates[r] = value;" },
  { T_VAR,              "            keys[r] = dst;" },
  { T_SCALAR,           "            rc = {struct}_{field}_get(&handle, &keys[r]);" },
  { T_FIXED,            "            rc = {struct}_{field}_get(&handle, keys[r], (uint2)sizeof(*keys));" },
  { T_VAR,              "            rc = {struct}_{field}_get(&handle, dst, max_key_len, &len);" },
  { T_ALL,              "            if (rc != ZKT_S_OK) { " },
  { T_ALL,              "                return rc;" },
  { T_ALL,              "            }" },
  { T_ALL,              "        }" },
  { T_ALL,              "      skip:" },
  { T_ALL,              "        rc = zkt_cursor_next(t, cursor);" },
  { T_ALL,              "    } while (rc == ZKT_S_OK);" },
  { T_SCALAR,           "    *n = top;" },
  { T_ALL,              "    zkt_cursor_close(t, cursor);" },
  { T_FIXED | T_VAR,    "    *n = top;" },
  { T_ALL,              "    return (rc == ZKT_S_CURSOR_END) ? ZKT_S_OK : rc;" },
};
const char kTopStart[] = "{{nl}";
const char kTopEnd[]   = "}{nl}{nl}";
const char kLineEnd[]  = "{nl}";
// clang-format on

const int kTopVariant[] = {T_SCALAR, T_FIXED, T_VAR};  // by TopKind

}  // namespace

void GenOutput::outputSequenceField(Struct& s, Class* c, Field& f, Frag& fr) {
  const Struct& e = *f.rare().seqElemStruct;
  const SeqElement* el = seqElement(e.m_category);
  fr.set("ename", e.m_name);
  setSize(fr, "es", e.m_layout.u.m_size);
  if (el != nullptr) {
    fr.set("seqfn", el->seqfn).set("seqtype", fr.fill(el->seqtype));
    fr.set("seqarg", fr.fill(el->seqarg)).set("seqhpp", fr.fill(el->seqhpp));
  } else {
    fr.set("seqfn", e.m_cType == "zkt_datetime" ? e.m_name : e.m_cType).set("seqtype", e.m_cType);
    fr.set("seqarg", mstring()).set("seqhpp", e.m_cType);
  }
  if (e.m_category == ET_STRUCT) {
    const FSize& es = e.m_layout.u.m_size;
    if ((es.is_str() ? es.calcTypeSize() : es.m_size_n) > kSeqMaxCharSize)
      m_err->warning("Size of sequence element is larger than ZKT_SEQ_MAX_CHAR_SIZE");
  }
  const mstring seqfn = fr.fill("{seqfn}"), seqtype = fr.fill("{seqtype}");
  fr.set("cast", seqfn != seqtype && seqtype != "zkt_datetime" ? "(char*)" : "");
  fr.set("order", f.rare().seqOrder).set("w", fr.fill(kSeqW)).set("S", fr.fill(kSeqS));
  if (c != nullptr) fr.set("cc", (m_mergeable ? mstring(kMergeableCode) : mstring()) + fr.fill("{code}"));

  const bool ordered = f.rare().seqOrder != kNoOrder;
  const mstring base = s.m_name + "_" + f.m_name;
  for (const SeqFunction& fn : kSeqFunctions) {
    if ((fn.when == SEQ_ORDERED && !ordered) || (fn.when == SEQ_IN_CLASS && c == nullptr)) continue;
    fr.set("call", fr.fill(fn.call));
    cFunction(base + fn.suffix, s.m_maxFuncName, fr.fill(fn.params), fr.fill(kSeqBody));
    if (fn.decl != nullptr) cppMember(fr.fill(fn.decl), kInline + fr.fill(fn.def));
  }
  outputManagedMember(s, f, fr);
}

void GenOutput::outputTopFunction(Struct& s, const Field& f, int kind, Frag& fr) {
  if (!m_debug && !s.m_from_cursor_defined) {
    // A prototype alone: written on the head stream and ended there.
    *m_def2 << inline_on_release() << retColumn() << " "
            << MF(s.m_name + "_from_cursor", s.m_maxFuncName) << fr.fill(kFromCursorProto);
    s.m_from_cursor_defined = true;
  }
  mstring body = fr.fill(kTopStart);
  for (const TopLine& line : kTopLines)
    if ((line.variants & kTopVariant[kind]) != 0) body += fr.fill(line.text) + fr.fill(kLineEnd);
  body += fr.fill(kTopEnd);
  cFunction(s.m_name + "_" + f.m_name + "_top", s.m_maxFuncName, fr.fill(kTopParams[kind]), body);
}

void GenOutput::outputScalarTop(Struct& s, Field& f, Frag& fr) { outputTopFunction(s, f, TOP_SCALAR, fr); }

namespace {

// The top-N function of a character key of variant kind, if s has sequences
// and f is unique.
void charTop(GenOutput& g, Struct& s, const Field& f, const char* ch, int kind) {
  if (!s.m_hasSequences || !f.m_isUnique) return;
  Frag fr;
  g.fieldFrag(s, nullptr, f, false, -1, fr);
  fr.set("ch", ch);
  g.outputTopFunction(s, f, kind, fr);
}

}  // namespace

void GenOutput::genCharTopFunction(Struct& s, const mstring&, const Field& f, const char* ch) {
  charTop(*this, s, f, ch, TOP_FIXED);
}

void GenOutput::genVarCharTopFunction(Struct& s, const mstring&, const Field& f, const char* ch) {
  charTop(*this, s, f, ch, TOP_VAR);
}
