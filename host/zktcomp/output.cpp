// Schema-level output: enums, handles and class codes, direct structs, object ids, and the sections of classes and structs.
#include "genout.h"

namespace {

bool isStructType(const Struct& t) { return t.m_category == ET_STRUCT || t.m_category == ET_DIRECT_STRUCT; }

// A struct that gets a handle and a section: a struct or direct struct that
// some class contains.
bool isOwnedStruct(const Struct& s) { return isStructType(s) && s.m_owners.size() > 0; }

bool hasVisibleOwner(const Struct& s) {
  for (unsigned int i = 0; i < s.m_owners.size(); i++)
    if (!s.m_owners[i]->m_suppressApi) return true;
  return false;
}

}  // namespace

// clang-format off
static const char kInlineMacro[] =
  "#ifndef {inline}\n"
  "#define {inline} __inline\n"
  "#endif\n"
  "\n";

static const char kJavaPackage[] = "package {package};\n";
static const char kJavaImport[]  = "import com.halvorn.vantrel.*;\n\n";
// A class file's import line has a single line feed: intended.
static const char kJavaClassImport[] = "import com.halvorn.vantrel.*;\n";
static const char kJavaSchema[] =
  "public class {db} { \n"
  "\tpublic static Class[] classes = { \n";

static const char kCsNamespace[] = "namespace {ns} {\n";
static const char kCsUsing[] =
  "using System;\n"
  "using Vantrel;\n"
  "\n";

static const char kEnumH[]       = "typedef enum {enum}_\n{\n";
static const char kEnumCs[]      = "public enum {enum} {\n";
static const char kEnumJava[]    = "public enum {enum} {\n";
static const char kEnumElH[]     = "  {choice} = {val}{comma}\n";
static const char kEnumElCs[]    = "\t{choice} = {val}{comma}\n";
static const char kEnumElJava[]  = "\t{choice}{comma}\n";
static const char kEnumEndH[]    = "} {enum};\n\n";
static const char kEnumEndCs[]   = "};\n\n";

static const char kTypesCs[] =
  "public class {db} { \n"
  "\tpublic static Type[] types = { \n";
static const char kTypeSep[]     = ",\n";
static const char kTypeCs[]      = "\t\ttypeof({class})";
static const char kTypeJava[]    = "\t{class}.class";
static const char kTypesEnd[]    = "\n\t};\n}\n\n";

// {phandle} is "{class}_" padded to the longest name + 1
static const char kClassHandle[] =
  "#ifndef ZKT_CPP_INTERFACE\n"
  "typedef struct {phandle}{ ZKT_Hf h; }  {class};\n"
  "#else\n"
  "class {hpp};\n"
  "#endif\n";
static const char kStructHandle[] =
  "#ifndef ZKT_CPP_INTERFACE\n"
  "typedef struct {phandle}{ ZKT_Hf h; }  {class};\n"
  "#else\n"
  "struct {hpp};\n"
  "#endif\n";
// {pdefine} is "#define " padded to the longest name + 31, {pcode} "{class}_code" to it + 6
static const char kClassCodeDefine[] = "{pdefine}{pcode}{number}\n";

static const char kDirectAlias[] = "\n#define  {struct}_d_aligned_to_1  {struct}_d\n\n";
static const char kPackBegin[]   = "\n#pragma pack(1)\n";
static const char kPackEnd[]     = "#pragma pack()\n\n";

static const char kDirectHead[]  = "typedef struct \n{\n";
static const char kDirectField[] = "\t{type} {field}{behind}{array};\n";
static const char kDirectEnd[]   = "}{struct}_d{suffix};\n";
static const char kDirectBadType[] = "#error Direct struct field has bad type ";

static const char kClassHpp[] =
  "\n"
  "class {hpp} : public ZktBase_\n"
  "{\n"
  "  public:\n"
  "\n";
static const char kClassHppEnd[] = "};\n";

static const char kStructHpp[] =
  "\n"
  "struct {hpp} : public ZktBase_\n"
  "{\n"
  "  public:\n"
  "\n";
static const char kStructCs[]     = "public struct {struct} {\n";
static const char kStructJava[]   = "public class {struct} {\n";
static const char kStructEnd[]    = "}\n";
static const char kStructHppEnd[] = "}; // {hpp}\n";

static const char kOidSimple[]   = "typedef {ctype}   {oid};\n\n";
static const char kOidHead[]     = "typedef struct {oid}__\n{\n";
static const char kOidField[]    = "  {pctype} {field}{suffix};\n";
static const char kOidEnd[]      = "} {oid};\n\n";
static const char kOidSize[]     = "#define {oid}_size  ( (uint2) sizeof({oid}) )\n\n";
static const char kOidProto[] =
  "ZKT_RET  {name}( zkt_trans_h t, const {oid}{ptail}\n"
  "\n";
static const char kOidDef[] =
  "ZKT_RET  {name}( zkt_trans_h t, const {oid}{tail}\n"
  "{body}\n"
  "}\n"
  "\n";
// clang-format on

mstring GenOutput::classCode(const Class& cls) const {
  mstring n = UT::n2s(cls.m_classCode);
  return m_mergeable ? "dict.class_code_origin + " + n : n;
}

IOutStream* GenOutput::createJavaFile(const mstring& name, bool classFile) {
  // Every Java file is closed before the next one opens ({db}.java is
  // collected in memory), so one of the same name only replaces it.
  if (!m_javaFiles.insert(UT::makefnm(m_dir, name))) m_err->warning1("file #1 generated twice", name);
  IOutStream* os = createFile(name);
  if (!m_javaPackage.empty()) *os << Frag().set("package", m_javaPackage).fill(kJavaPackage);
  *os << (classFile ? kJavaClassImport : kJavaImport);
  return os;
}

void GenOutput::output() {
  IOutStream* const schemaJava = m_java;
  Frag fr;
  fr.set("db", m_sc.m_dbname);
  fr.set("inline", inline_macro());
  fr.set("ns", m_csNamespace);

  if (!m_debug) *m_h << fr.fill(kInlineMacro);
  // {db}.java is collected in memory and written when the class list ends,
  // so that an enum of the database's name never shares its path.
  if (m_gen_java) {
    m_java = IOutStream::createStrStream("");
    fr.fillTo(*m_java, kJavaSchema);
  }
  if (!m_csNamespace.empty()) *m_cs << fr.fill(kCsNamespace);
  *m_cs << kCsUsing;

  // Enumerations; a Java enum has no values.
  if (m_sc.s_enum.get()->size() > 0) head2(m_h, "Enumerations");
  for (ISet::HPos pos(m_sc.s_enum.first()); pos.valid(); pos.next()) {
    const Enum& e = *static_cast<Enum*>(pos.get().get());
    fr.set("enum", e.m_name);
    fr.fillTo(*m_h, kEnumH);
    fr.fillTo(*m_cs, kEnumCs);
    IOutStream* java = nullptr;
    if (m_gen_java) {
      java = createJavaFile(e.m_name + ".java");
      fr.fillTo(*java, kEnumJava);
    }
    for (unsigned int i = 0; i < e.v_els.size(); i++) {
      fr.set("choice", e.v_els[i].m_choice);
      fr.set("val", (long)e.v_els[i].m_val);
      fr.set("comma", i + 1 < e.v_els.size() ? "," : "");
      fr.fillTo(*m_h, kEnumElH);
      fr.fillTo(*m_cs, kEnumElCs);
      if (java) *java << fr.fill(kEnumElJava);
    }
    fr.fillTo(*m_h, kEnumEndH);
    *m_cs << kEnumEndCs;
    if (java) {
      *java << kEnumEndCs;
      delete java;
    }
  }

  // Handles and class codes of the visible classes, whose codes must run
  // 1, 2, 3 in declaration order.
  head2(m_h, "Handles and Class Codes");
  fr.fillTo(*m_cs, kTypesCs);
  int counter = 1;
  for (ISet::HPos pos(m_sc.s_class.first()); pos.valid(); pos.next()) {
    const Class& cls = *static_cast<Class*>(pos.get().get());
    if (cls.m_hidden) continue;
    if (counter > 1) {
      *m_cs << kTypeSep;
      *m_java << kTypeSep;
    }
    fr.set("class", cls.m_name);
    fr.set("hpp", hppClass(cls.m_name));
    fr.fillTo(*m_cs, kTypeCs);
    fr.fillTo(*m_java, kTypeJava);
    if (cls.m_classCode != counter) IErrReporter::panic("class codes order", false);
    counter++;
    if (!cls.m_hasId && !cls.m_sequential && !cls.m_hasAutoId && cls.v_index.size() == 0)
      m_err->warning1("class #1 has no oid, autoid, list, or index defined", cls.m_name);
    fr.set("phandle", UT::adjust(cls.m_name + "_", m_maxClassName + 1));
    fr.set("pdefine", UT::adjust("#define ", m_maxClassName + 31));
    fr.set("pcode", UT::adjust(cls.m_name + "_code", m_maxClassName + 6));
    fr.set("number", (long)cls.m_classCode);  // plain, even when mergeable
    fr.fillTo(*m_h, kClassHandle);
    fr.fillTo(*m_h, kClassCodeDefine);
  }
  *m_cs << kTypesEnd;
  *m_java << kTypesEnd;
  if (m_java != schemaJava) {
    IOutStream* file = createJavaFile(m_sc.m_dbname + ".java");
    *file << m_java->retstr();
    delete file;
    delete m_java;
    m_java = schemaJava;
  }

  // Handles of the owned structs, and the C structs of direct structs.
  for (ISet::HPos pos(m_sc.s_struct.first()); pos.valid(); pos.next()) {
    Struct& s = *static_cast<Struct*>(pos.get().get());
    if (!isOwnedStruct(s)) continue;
    fr.set("class", s.m_name);
    fr.set("struct", s.m_name);
    fr.set("hpp", hppClass(s.m_name));
    fr.set("phandle", UT::adjust(s.m_name + "_", m_maxClassName + 1));
    fr.fillTo(*m_h, kStructHandle);
    if (s.m_category != ET_DIRECT_STRUCT) continue;
    direct_struct_output(s, "");
    if (!s.m_is_packed) {
      fr.fillTo(*m_h, kDirectAlias);
    } else {
      *m_h << kPackBegin;
      direct_struct_output(s, "_aligned_to_1");
      *m_h << kPackEnd;
    }
  }
  *m_h << "\n";
  *m_hpp << "\n\n";

  head2(m_h, "Structures for fixed part of the structure");
  for (ISet::HPos pos(m_sc.s_struct.first()); pos.valid(); pos.next())
    genFixedStruct(*static_cast<Struct*>(pos.get().get()));
  for (ISet::HPos pos(m_sc.s_class.first()); pos.valid(); pos.next()) {
    Class& cls = *static_cast<Class*>(pos.get().get());
    if (!cls.m_hidden) genFixedStruct(cls);
  }
  *m_h << "\n";
  *m_hpp << "\n\n";

  outputObjid();

  for (ISet::HPos pos(m_sc.s_class.first()); pos.valid(); pos.next()) {
    Class& cls = *static_cast<Class*>(pos.get().get());
    if (!cls.m_hidden) outputClassSection(cls);
  }
  for (ISet::HPos pos(m_sc.s_struct.first()); pos.valid(); pos.next()) {
    Struct& s = *static_cast<Struct*>(pos.get().get());
    if (isOwnedStruct(s)) outputStructSection(s);
  }

  for (ISet::HPos pos(m_sc.s_struct.first()); pos.valid(); pos.next()) {
    Struct& s = *static_cast<Struct*>(pos.get().get());
    if (isOwnedStruct(s) && hasVisibleOwner(s)) outputFixed(s);
  }
  for (ISet::HPos pos(m_sc.s_class.first()); pos.valid(); pos.next()) {
    Class& cls = *static_cast<Class*>(pos.get().get());
    if (!cls.m_suppressApi) outputFixed(cls);
  }

  // The inline C++ bodies follow all class declarations.
  *m_hpp << "\n";
  if (!m_csNamespace.empty()) *m_cs << "}\n";
  *m_hpp << m_hpp_tail->retstr() << "\n";
}

// A class with a suppressed API keeps its frame and its XML and JSON methods.
void GenOutput::outputClassSection(Class& cls) {
  Frag fr;
  fr.set("hpp", hppClass(cls.m_name));
  head2(m_h, "class " + cls.m_name + " methods");
  fr.fillTo(*m_hpp, kClassHpp);
  if (!cls.m_suppressApi) {
    outputClassFunctions(cls);
    output(cls);
    if (cls.v_events.size() > 0) {
      head2(m_h, "class " + cls.m_name + " events");
      outputEvents(cls);
    }
  }
  if (m_genXmlMethods) outputXmlRW(cls);
  if (m_genJsonMethods) outputJsonW(cls);
  *m_hpp << kClassHppEnd;
}

// The accessors of a struct come once, with the first owner that has an API.
void GenOutput::outputStructSection(Struct& s) {
  Frag fr;
  fr.set("struct", s.m_name);
  fr.set("hpp", hppClass(s.m_name));
  head2(m_h, "struct " + s.m_name + " methods");
  fr.fillTo(*m_hpp, kStructHpp);
  fr.fillTo(*m_cs, kStructCs);
  IOutStream* const outer = m_java;
  if (m_gen_java) {
    m_java = createJavaFile(s.m_name + ".java");
    fr.fillTo(*m_java, kStructJava);
  }
  if (hasVisibleOwner(s)) output(s, nullptr);
  *m_cs << kStructEnd;
  *m_java << kStructEnd;
  if (m_java != outer) {
    delete m_java;
    m_java = outer;
  }
  fr.fillTo(*m_hpp, kStructHppEnd);
}

void GenOutput::direct_struct_output(Struct& s, const mstring& suffix) {
  *m_h << kDirectHead;
  const mvector<FldLayout>& order = s.m_layout.c.v_fldOrder;
  for (unsigned int i = 0; i < order.size(); i++) {
    const Field& f = *order[i].m_ref;
    const Struct& t = *f.m_pstruct;
    const mstring size = t.m_layout.c.m_size;
    mstring type;
    mstring behind;
    switch (t.m_category) {
      case ET_SIMPLE:
        type = t.m_cType;
        break;
      case ET_DIRECT_STRUCT:
        type = t.m_name + "_d";
        break;
      case ET_CHARS:
      case ET_BINARY:
        type = "char";
        behind = "[" + size + "]";
        break;
      case ET_UNICODE_CHARS:
        type = "nchar_t";
        behind = "[" + size + " / sizeof(nchar_t)]";
        break;
      case ET_STRUCT:
      case ET_STRING:
      case ET_BLOB:
      case ET_REF:
      case ET_AUTOID:
      case ET_VERSION:
      case ET_AUTOOID:
      case ET_UNICODE_STRING:
      case ET_WIDE_CHARS:
      case ET_WCHAR_STRING:
      case ET_SEQUENCE:
      case ET_VARBINARY:
        type = kDirectBadType;
        break;
    }
    mstring array;
    if (f.m_isArray) {
      // booleans are bits
      const int n = f.m_eltype == "boolean" ? (f.m_arraySize + 7) / 8 : f.m_arraySize;
      array = "[" + UT::n2s(n) + "]";
    }
    Frag().set("type", type).set("field", f.m_name).set("behind", behind).set("array", array).fillTo(*m_h, kDirectField);
  }
  Frag().set("struct", s.m_name).set("suffix", suffix).fillTo(*m_h, kDirectEnd);
}

// The oid type, then the two functions that work on an object by its oid:
// prototypes in the header, definitions in the C file.
void GenOutput::outputObjid() {
  if (!m_sc.m_useObjid) return;
  Frag fr;
  fr.set("oid", m_sc.objIdName());
  head2(m_h, "Object Id definitions");
  const Struct& type = *m_sc.m_objid_type_ptr;
  if (!isStructType(type)) {
    fr.set("ctype", type.m_cType).fillTo(*m_h, kOidSimple);
  } else {
    fr.fillTo(*m_h, kOidHead);
    for (unsigned int i = 0; i < type.v_field.size(); i++) {
      const Field& f = type.v_field[i];
      const Struct& t = *f.m_pstruct;
      const mstring size = t.m_layout.c.m_size;
      mstring ctype;
      mstring suffix;
      const char* refused = nullptr;
      switch (t.m_category) {
        case ET_STRUCT:
        case ET_DIRECT_STRUCT:
          refused = "Nested stucture in oid";  // the message has always been spelt so
          break;
        case ET_SIMPLE:
          ctype = t.m_cType;
          break;
        case ET_CHARS:
        case ET_BINARY:
          ctype = "char";
          suffix = "[" + size + "]";
          break;
        case ET_UNICODE_CHARS:
          ctype = "nchar_t";
          suffix = "[" + size + " / sizeof(nchar_t) ]";
          break;
        case ET_STRING:
        case ET_BLOB:
        case ET_REF:
        case ET_AUTOID:
        case ET_VERSION:
        case ET_AUTOOID:
        case ET_UNICODE_STRING:
        case ET_WIDE_CHARS:
        case ET_WCHAR_STRING:
        case ET_SEQUENCE:
        case ET_VARBINARY:
          refused = "Variable-length field in oid";
          break;
      }
      if (refused != nullptr) m_err->err(refused);
      fr.set("pctype", UT::adjust(ctype, 15)).set("field", f.m_name).set("suffix", suffix).fillTo(*m_h, kOidField);
    }
    fr.fillTo(*m_h, kOidEnd);
  }
  fr.fillTo(*m_h, kOidSize);

  // clang-format off
  static const struct { const char* name; const char* ptail; const char* tail; const char* body; } kOidFunctions[] = {
    // name               prototype tail                            parameter tail                           body line
    { "_delete_object",   " * oid );",                              " * oid )",                              "{ return zkt_w_obj_del_byoid( t, oid ); " },
    { "_get_class_code",  " * oid, /*OUT*/ uint2 * class_code );",  " * oid, /*OUT*/ uint2 * class_code )",  "{ return zkt_w_classcode_byoid( t, oid, class_code ); " },
  };
  // clang-format on
  const int width = (int)m_sc.m_dbname.size() + 16;
  for (const auto& fn : kOidFunctions) {
    fr.set("name", MF(m_sc.m_dbname + fn.name, width)).set("ptail", fn.ptail).set("tail", fn.tail).set("body", fn.body);
    fr.fillTo(*m_h, kOidProto);
    fr.fillTo(*m_c, kOidDef);
  }
}
