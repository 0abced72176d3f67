// Generator frame: the output files of a compilation, their heads and tails, names and widths, and the layout pass.
#ifndef ZKTCOMP_GENOUT_H
#define ZKTCOMP_GENOUT_H

#include "ierrrep.h"
#include "schema.h"

// Version of this compiler, as the generated banner and the dictionary show it.
#define ZKT_COMP_BUILD_NUM 1803
#define ZKT_COMP_VER_MAJOR 8
#define ZKT_COMP_VER_MINOR 3
#define ZKT_COMP_API_VERSION 17
#define ZKT_COMP_REVISION "interim build Vantrel_8.3_1803, rev.29517"

// The key parameters of one index while its functions are written, and the
// names of the other parameters, chosen so that they clash with no key.
struct StrParams {
  mstring strParams;           // key declarations, each behind ", "
  mstring strParamsTransit;    // key arguments of a call, each behind ", "
  mstring strParamsExtAssign;  // statements that fill the key array, one line per segment
  mvector<mstring> allParamNames;  // every key parameter name of the index
  mstring t, c, oper, handle;      // transaction, cursor, operation and handle names
  // Appends the texts of every segment of idx, in order.
  void addSegments(Index& idx, const Schema* sc, mvector<mstring>& ptrTypes);
  // Chooses t, c, oper and handle.
  void setup();
  // The first of the n names of list that is no key parameter; when all are,
  // the last name with the first free number 0, 1, 2 ... behind it.
  mstring choose(const char* const* list, int n) const;
};

// Turns a finished Schema into source files. The constructor only stores its
// arguments; init opens the streams, run writes everything, close (also run
// by the destructor) deletes every stream.
//
// Every generated function goes through the three routing streams in one
// order: head on m_def2, ";" on m_prot, a line feed on m_def2, body on
// m_body. createStreams decides where they lead: with m_debug the header
// gets a prototype and the C file the definition; without it the header gets
// an inline definition and the ";" goes nowhere.
// The indicator guards of a nullable field's accessors (" uint1 indicator;
// ..." and " ZKT_RET rc = ..._indicator_put(handle, 1); ..."), filled with
// {struct} and {field}; each follows a body's opening "{".
extern const char kGetGuard[];
extern const char kPutGuard[];

// What the banner's " * at " line shows under -notime, with the line feed
// that the time text would have brought.
extern const char kNoTimeBanner[];

// The handler type of an event: "zkt_{name}_handler".
mstring ehandler_name(const Event& e);

class GenOutput {
public:
  Schema& m_sc;          // not owned
  IErrReporter* m_err;   // not owned
  mstring m_dir;         // output directory
  mstring m_csNamespace;
  mstring m_javaPackage;
  bool m_prefix;         // generated names get the database name as prefix
  IOutStream* m_h;       // {db}.h
  IOutStream* m_c;       // {db}.c
  IOutStream* m_def2;    // function heads (routing)
  IOutStream* m_body;    // function bodies (routing)
  IOutStream* m_prot;    // what ends a prototype (routing)
  IOutStream* m_x;       // {db}.xml; null without the dump
  IOutStream* m_hpp;     // {db}.hpp
  IOutStream* m_cs;      // {db}.cs
  IOutStream* m_java;    // the Java file of the moment
  IOutStream* m_udf;     // user-defined index functions
  IOutStream* m_coll;    // collation functions
  bool m_gen_hpp;
  bool m_gen_cs;
  bool m_gen_java;
  bool m_gen_smartptr;
  bool m_debug;          // functions go to the C file, prototypes to the header
  bool m_nosort;         // layouts keep the declared field order
  bool m_dumpxml;
  bool m_cmode1;         // read by the dictionary writer only
  bool m_genXmlMethods;
  bool m_genJsonMethods;
  bool m_genSql;         // stored, not read
  bool m_largeDatabase;  // read by the dictionary writer
  int m_target_sizeof_zkt_size_t;
  bool m_mergeable;      // class codes in generated calls behind "dict.class_code_origin + "
  bool m_dll;            // "ZKT_DLL_SPEC" decoration
  int m_wcharSize;       // stored, not read
  IOutStream* m_hpp_tail;  // inline C++ method bodies, kept in memory until the end of output()
  mvector<mstring> m_files_created;  // paths in order of creation (a Java file may come twice)
  StringSet m_javaFiles;             // paths of the Java files of this run, to warn of a second one
  int m_maxClassName;
  int m_maxIndexName;
  int m_maxFieldName;
  int m_maxCtypeName;
  int m_fmtRet;          // width of the return type column
  mstring m_retColumn;
  int m_retColumnWidth = -1;
  int m_idxMethodName;   // width of index method names
  // Build integration, set by the file compiler after construction; all off
  // by default, which leaves every byte as it was.
  bool m_listOnly = false;   // -list-outputs: record the paths in m_files_created, open no file
  bool m_notime = false;     // -notime: the banner shows kNoTimeBanner instead of the time
  bool m_ifchanged = false;  // -ifchanged: every file goes through Replaced::open

  GenOutput(Schema& sc, bool debug, bool nosort, bool dumpxml, bool gen_hpp, bool gen_cs, bool gen_java,
            bool gen_smartptr, IErrReporter* err, const mstring& dir, const mstring& csNamespace,
            const mstring& javaPackage, bool cmode1, bool genXmlMethods, bool genJsonMethods, bool genSql,
            bool largeDatabase, int target_sizeof_zkt_size_t, int wcharSize, bool prefix, bool mergeable,
            bool dll);
  virtual ~GenOutput();

  // ---- virtual slots, in this order; the memory builder overrides them all
  // Opens every stream; udf and coll tell whether the user-function files
  // are wanted.
  virtual void createStreams(bool udf, bool coll);
  // Lays out one struct or class whose first field starts at start; cls is
  // the owning class or null. Structs nested in it are laid out first (on an
  // explicit stack, so deep nesting costs no machine stack) and get cls as
  // owner. Returns true: a recursive definition is an error that ends the
  // compile.
  virtual bool layout(Struct& s, int start, Class* cls);
  // Assigns offsets in one layout of s from the ordered l.v_fldOrder.
  virtual void layout(Layout& l, int start, Struct* s);
  virtual void update_layout_strings(FldLayout& fl);
  // Size of n elements of size elem: the text "({elem})*{n}".
  virtual FSize getArraySize(FSize& elem, int n);

  // ---- the frame
  void init();
  void run();
  void checkWritten();  // an error when a file stream failed to write
  void close();
  static mvector<mstring> listAllOutputs(const mstring& dir, const mstring& name);
  static const char* inline_macro() { return "ZKT_TARGET_INLINE "; }
  const char* inline_on_release() const { return m_debug ? "" : inline_macro(); }
  mstring MF(const mstring& name, int width);
  // "ZKT_RET" padded to m_fmtRet, made once per width.
  const mstring& retColumn() {
    if (m_retColumnWidth != m_fmtRet) {
      m_retColumn = UT::adjust("ZKT_RET", m_fmtRet);
      m_retColumnWidth = m_fmtRet;
    }
    return m_retColumn;
  }
  void head2(IOutStream* os, const mstring& title);
  // One generated C function in the routing pattern: inline_on_release(),
  // "ZKT_RET" padded to m_fmtRet, a blank, MF(name, width) and params on
  // m_def2; ";" on m_prot; a line end on m_def2; body on m_body.
  void cFunction(const mstring& name, int width, const mstring& params, const mstring& body);
  // One C++ method of class hpp: decl on m_hpp; "inline  ZKT_RET {hpp}::"
  // and def on m_hpp_tail.
  void cppMethod(const mstring& hpp, const mstring& decl, const mstring& def);
  // A C++ member written as a whole: decl on m_hpp, def (may be empty) on
  // m_hpp_tail.
  void cppMember(const mstring& decl, const mstring& def);
  // cFunction for a function whose prototype is followed by defines: ";" and
  // a line end on m_prot, a line end on m_def2, defines on m_prot, body on
  // m_body.
  void cFunctionDefines(const mstring& name, int width, const mstring& params, const mstring& defines,
                        const mstring& body);
  void outConstant(IOutStream* os, const mstring& name, int value);
  mstring nameWithPrefix(const mstring& name);
  void calculateFormating();
  void heading();
  void ending();
  void dump(IOutStream& os);

  // ---- schema-level output: enums, handles and codes, direct structs,
  // fixed parts, object ids, then the sections of every class and struct
  void output();
  // A C struct with the fields of direct struct s in compact-layout order,
  // named {struct}_d{suffix}.
  void direct_struct_output(Struct& s, const mstring& suffix);
  void outputObjid();
  // {db}_get_dictionary into the C file, in the static or (m_cmode1) the
  // assignment form.
  void outputDictionary();
  // {code}: a class code as generated calls write it.
  mstring classCode(const Class& cls) const;

  // ---- steps that later parts of the generator fill
  // {db}_get_calculator into the C file: null, or the table of the
  // calculator's classes (whose names get the prefix here).
  void outputCalculator();
  // {db}_get_udfs: the table of user-defined index functions, their
  // prototypes, key macros and stubs in the udf file; nothing when no class
  // with such an index has an API.
  void outputUserdef();
  // {db}_get_collations likewise, stubs in the collation file.
  void outputCollation();
  // The table entries of user-defined index idx of cls; with an API also its
  // prototypes, stubs and key macros.
  void outputUserdefIndex(Class& cls, Index& idx);
  // One function of a user-defined index: comment and stub in the udf file,
  // prototype in the header, entry (fr's {udf} and the name) in the table.
  void outputUserdefFunction(const char* comment, const mstring& signature, const mstring& name, const char* entry,
                             Frag& fr);
  // signature as prototype in the header, and with the stub body on os.
  void userFunction(IOutStream* os, const mstring& signature);
  // The class-level functions of a visible class without a suppressed API.
  void outputClassFunctions(Class& cls);
  // The managed-language class head and end around the fields, the fields,
  // the cursor functions and the API of every visible index.
  void output(Class& cls);
  // The index API of one index that is neither list, hidden nor history: the
  // C functions {class}_{index}_{op} of its kind and the nested C++ class
  // "{index}" of {hpp} with their static methods.
  void outputIndex(Class& cls, Index& idx);
  // {prefix}_{field}_from_cursor of segment number segment of idx, whose key
  // pointer type is type; {prefix} is {class}_{index}.
  void gen_direct_idx_fields(Class& cls, Index& idx, mstring prefix, mstring type, int segment);
  // Per event of cls: its number's define, handler type, register and
  // unregister functions; C only.
  void outputEvents(Class& cls);
  // The XML functions and members of cls; none if one of its own fields is
  // a wide character field.
  void outputXmlRW(Class& cls);
  // {class}_json_get and its member.
  void outputJsonW(Class& cls);
  // {class} {db} {cc} {nl} of the XML and JSON functions.
  void memberFrag(const Class& cls, Frag& fr) const;
  // cFunction with note written behind the prototype's ";".
  void cFunctionNoted(const mstring& name, int width, const mstring& params, const char* note, const mstring& body);
  // The accessors of every visible field of struct or class s; c is the
  // class itself or null for a struct.
  void output(Struct& s, Class* c);
  // Sets every placeholder a field's accessors may name, in one place:
  // {struct} {field} {ctype} {tname} {uoff} {coff} {usize} {esize} {no} {n}
  // {idx} {ev} {evarg} {db} {code} (a struct has none) {nl}.
  void fieldFrag(const Struct& s, const Class* c, const Field& f, bool indexed, int ev, Frag& fr) const;
  // The accessors of a field that is neither optional, vector nor array, by
  // the category of its type; ev is its update event or -1.
  void outputPlainField(Struct& s, Class* c, Field& f, int ev, Frag& fr);
  // get, put and their companions of a scalar or auto id field.
  void outputScalarField(Struct& s, Class* c, Field& f, int ev, Frag& fr);
  // The accessors of character fields, ev being the update event or -1:
  // char<n> and binary<n>; string and varbinary; nchar<n>; nstring.
  void outputCharsField(Struct& s, Class* c, Field& f, int ev, Frag& fr);
  void outputStringField(Struct& s, Class* c, Field& f, int ev, Frag& fr);
  void outputUnicodeCharsField(Struct& s, Class* c, Field& f, int ev, Frag& fr);
  void outputUnicodeStringField(Struct& s, Class* c, Field& f, int ev, Frag& fr);
  // get, put and their companions of a fixed-size character field; only the
  // narrow ones (not wide) have _sequence and a property struct.
  void outputFixedCharsField(Struct& s, Class* c, Field& f, int ev, Frag& fr, bool wide);
  // get, size, put and their companions of a variable-size character field;
  // only the narrow ones have a property struct.
  void outputVarCharsField(Struct& s, Field& f, int ev, Frag& fr, bool wide);

  // ---- per-field families that later parts of the generator fill
  // The C# and Java text of class cls ahead of its fields: storage
  // attribute, IoT annotation, indexes, events, "public class". With
  // m_gen_java it opens {class}.java as m_java and returns the stream that
  // m_java was before, which closeManagedClassFile puts back.
  IOutStream* outputManagedClassHead(Class& cls);
  void outputManagedClassEnd(Class& cls);  // the closing brace in both languages
  void closeManagedClassFile(IOutStream* outer);
  // The attributes of a plain field's own update event, ev being its id.
  void outputEventAttribute(Class& cls, int ev);
  // The field's member in C# and Java; fr holds the field's placeholders
  // ({order} {seqtype} {es} too for a sequence).
  void outputManagedMember(Struct& s, Field& f, Frag& fr);
  // A direct struct's {struct}_get_ptr, _get_all and _put_all, with C++
  // get_all and put_all; written even when its API is suppressed.
  void outputDirectStructFunctions(Struct& s);
  // {struct}_{field}_top of a unique scalar key of a struct with sequences;
  // fr holds the field's placeholders.
  void outputScalarTop(Struct& s, Field& f, Frag& fr);
  // _read_handle, _write_handle and _erase of an optional struct member; any
  // other type is the error "optional may be only struct".
  void output_optional_field(Struct& s, Class* c, Field& f, const mstring& base);
  // The accessors of a vector field: _size, _alloc and those of its elements.
  void output_vector_field(Struct& s, Class* c, Field& f, const mstring& base, const char* idx);
  // The {struct}_{field}_length define, _get and _put of a rect or point
  // field (kind "rect" or "point") and its -smartptr property struct; throws
  // "unknown case" after the define for coordinates that are not simple.
  void output_spatial_field(Struct& s, Class* c, Field& f, const mstring& base, const char* idx, const char* kind);
  // The accessors of an array field {field}[n], by element family, and its
  // {struct}_{field}_length define.
  void output_array_field(Struct& s, Class* c, Field& f, const mstring& base, const char* idx);
  // {struct}_{field}_top of a fixed or variable character key; ch is "char"
  // or "nchar_t".
  // Nothing unless s.m_hasSequences and f.m_isUnique.
  void genCharTopFunction(Struct& s, const mstring& base, const Field& f, const char* ch);
  void genVarCharTopFunction(Struct& s, const mstring& base, const Field& f, const char* ch);
  // The top-N function of f in variant kind (scalar, fixed or variable
  // characters), preceded once per struct, outside debug mode, by the
  // prototype of {struct}_from_cursor (sets s.m_from_cursor_defined).
  void outputTopFunction(Struct& s, const Field& f, int kind, Frag& fr);
  // _get, _size, _put and _append of a blob field; no event, both offsets.
  void outputBlobField(Struct& s, Class* c, Field& f, Frag& fr);
  // _get and _put of a reference; the one-offset form where the offsets agree.
  void outputRefField(Struct& s, Class* c, Field& f, Frag& fr);
  // _read_handle and _write_handle of a member struct or direct struct.
  void outputStructField(Struct& s, Class* c, Field& f, Frag& fr);
  // The functions of a sequence field and their C++ members; fr holds the
  // field's placeholders. A struct element above 32 bytes is warned about.
  void outputSequenceField(Struct& s, Class* c, Field& f, Frag& fr);
  // Counts the fields of s's fixed view into s.m_nFixedFields and, if there
  // are any, declares {struct}_fixed on m_h. Member structs count by the
  // number their own struct has so far.
  void genFixedStruct(Struct& s);
  // {struct}_fixed_get and _fixed_put of a struct or class with a fixed view.
  void outputFixed(Struct& s);

  // ---- layout
  void layout();
  int oid_layout(Struct& s);
  FSize alignInt(FSize sz, FSize a);
  FSize alignInt(FSize sz, int& a);

protected:
  // Opens the Java file name with its package and import lines; a class
  // file's import line has one line feed, the others two. A second file of
  // one name in a run replaces the first, with a warning.
  IOutStream* createJavaFile(const mstring& name, bool classFile = false);
  // The section of class cls in output().
  void outputClassSection(Class& cls);
  // The section of an owned struct s in output().
  void outputStructSection(Struct& s);
  // The three routing streams over m_h and m_c, by m_debug.
  void createRouting();
  // Creates the file name in m_dir and records its path.
  IOutStream* createFile(const mstring& name);
  // The user-function file {db}{suffix}, or {db}{suffix}.new when the former
  // exists, so a user's edits are never overwritten.
  IOutStream* createUserFile(const char* suffix, const char* warning);
  // Fills size and alignment of the two records of field f of s.
  void fieldLayout(Struct& s, Field& f, FldLayout& c, FldLayout& u);
  // A number of s's layout must fit an int; otherwise "Struct {s} is too large".
  int checkedSize(long long n, const Struct& s);

private:
  GenOutput(const GenOutput&);
  GenOutput& operator=(const GenOutput&);
};

#endif
