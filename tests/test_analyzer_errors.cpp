// Analyzer and finishing pass: every refused schema with its message and line, one row per error path.
#include <gtest/gtest.h>

#include "analyzer_util.h"

namespace {

struct ErrorCase {
  const char* schema;
  const char* message;  // as the reporter shows it, after translation
  int line;
  bool sql = false;
};

#define DB "declare database d;\n"

// clang-format off
const ErrorCase kRefused[] = {
  // class modifiers and statements
  { DB "persistent struct s { signed<4> a; };", "Invalid syntax", 2 },
  { "local\ndistributed class c { signed<4> a; };", "'local' contradicts with 'distributed' keyword.", 2 },
  { "distrib local class c { };", "'local' contradicts with 'distributed' keyword.", 1 },
  { "uptable class c { };", "'uptable' can be declared only for IoT schema", 1 },
  { "downtable class c { };", "'downtable' can be declared only for IoT schema", 1 },
  { "iot server;\ndowntable uptable class c { };", "'uptable' contradicts with 'downtable' keyword.", 2 },
  { "iot server;\nuptable\ndowntable class c { };", "'downtable' contradicts with 'uptable' keyword.", 3 },
  { "persistent transient class c { };", "expected 'class' keyword", 1 },
  { DB "foo;", "unexpected token: \"foo\"", 2 },
  // declare
  { DB "declare database e;", "database was already declared", 2 },
  { "declare oid x[1];\ndeclare oid x[2];", "oid was already declared", 2 },
  { "declare oid x[0];", "oid estimated count value is not valid", 1 },
  { "declare auto_oid[5];\ndeclare HA[6];", "duplicate auto_oid [estimation]", 2 },
  { "declare AUTO_OID[0];", "auto_oid estimated count value is not valid", 1 },
  { "declare schema d;", "invalid declare statement", 1 },
  { "declare oid x[5];\ndeclare database d;\n", "oid struct \"x\" was not defined", 3 },  // found at end of input
  { "class x { signed<4> a; };\ndeclare oid x[5];", "oid struct \"x\" was not defined", 2 },  // a class is no type
  // iot
  { "iot router<1>;", "Router level must be in interval 2 - 65534", 1 },
  { "iot router<65535>;", "Router level must be in interval 2 - 65534", 1 },
  { "iot gateway;", "expected 'server', 'device' or 'router' keyword", 1 },
  { "iot device abc;", "expected agent ID", 1 },
  { "iot server 5;", "expected \";\"", 1 },
  // types and names
  { "packed struct s { signed<4> a; };", "expected 'direct' keyword", 1 },
  { "direct class s { };", "expected 'struct' keyword", 1 },
  { "struct s { signed<4> a; };\nstruct s { signed<4> b; };", "type \"s\" was already defined", 2 },
  { "enum s { x };\nclass s { signed<4> a; };", "type \"s\" was already defined", 2 },
  { "class c { signed<4> a; };\nclass c { signed<4> a; };", "class \"c\" was already defined", 2 },
  { "struct date { signed<4> a; };", "\"date\" is a reserved word", 1 },
  { "enum count { a };", "\"count\" is a reserved word", 1, true },
  { "distributed class date { };", "\"date\" is a reserved word", 1 },  // the header is read first
  { "enum a { x };\nenum b { y,\n x };", "duplicate element name \"x\" in enum", 3 },
  { "enum e { a b };", "unexpected token: \"b\"", 1 },
  { "enum e { a = x };", "number expected, found x", 1 },
  // calculator
  { "class c { signed<4> a; };\ncalculator { c<5> };\ncalculator { c<6> };", "Each schema may have only one calculator.\n", 3 },
  { "calculator { c<5> };\nclass c { signed<4> a; };", "class c doesn't exiests", 1 },
  { "class c { signed<4> a; };\ncalculator { c<5>, c<6> };", "duplicate class c in calculator", 2 },
  { "calculator { }\n;", "unexpected token: \";\"", 2 },  // the empty form takes no ';'
  // class bodies
  { "distributed class c {\n signed<4> a; };", "Class c declared as distributed, but auto_oid undeclared", 1 },
  { "class c {\n unique signed<4> a; };", "Invalid syntax", 2 },
  { "class c {\n sequences;\n list\n; };", "list was already declared", 4 },  // after the ';'
  { "class c {\n oid;\n OID; };", "oid was already declared", 3 },
  { "class c {\n autoid[5];\n autoid[6]; };", "autoid was already declared", 3 },
  { "class c {\n autoid[0]; };", "estimated count value is not valid for the autoid", 2 },
  { "class c {\n history[5] };", "expected \";\"", 2 },
  { "class c {\n boolean updated_bitmap[];\n};", "Only updated_bitmap field declared for class, please declare other class fields.", 3 },
  { "class c { signed<4> a;", "identifier expected, found \"#1\"", 1 },  // end of input in a body
  // field types
  { "struct s {\n decimal<20,1> a; };", "decimal width not be larger than 19", 2 },
  { "struct s { decimal<2,3> a; };", "precision should be smaller than width", 1 },
  { "struct s { decimal<5> a; };", "expected \">\"", 1 },  // a width alone needs a second '>'
  { "struct s { signed<3> a; };", "illegal size: allowed sizes are 1,2,4,8", 1 },
  { "struct s { char<-1> a; };", "positive number expected, found -1", 1 },
  { "struct s { sequence<signed<4>> q; };", "Sequence cannot be element of a struct", 1 },
  { "class c { sequence<decimal<5,2> asc> q; };", "Sequence element can not be of numeric type", 1 },
  { "class c { sequence<signed<4> sideways> q; };", "sequence specification error", 1 },
  { "class c { rectangle<double> r; };", "rectangle dimension must be specified", 1 },
  { "class c { point<double> p; };", "point dimension must be specified", 1 },
  { "class c { rect<double> r[17]; };", "dimension size limits", 1 },
  { "class c { point<double> p[1]; };", "dimension size limits", 1 },
  { "class c { string updated_bitmap[4]; };", "updated_bitmap - could be only of type boolean.", 1 },
  { "class c {\n boolean updated_bitmap\n ; };",  // the look-ahead has read the next line
    "updated_bitmap - could be only of type bool and should be declared as array field.", 3 },
  { "struct s { signed<4> a[0]; };", "array size must be between 1 and 65535", 1 },
  { "struct s { signed<4> a[65536]; };", "array size must be between 1 and 65535", 1 },
  { "struct s {\n signed<4> a;\n string a; };", "field a already exists", 3 },
  { "struct s { signed<4> a, date; };", "\"date\" is a reserved word", 1 },
  { "struct s { vector<signed<4>> desc; };", "\"desc\" is a reserved word", 1 },
  { "struct s { signed<4> a b; };", "expected ',' or ';'", 1 },
  { "struct s { signed<4> a[2], b[2]; };", "expected ',' or ';'", 1 },  // later names take no '['
  { "class c { signed<4> a; autoid[10]; signed<4> autoid; };", "field autoid already exists", 1 },
  // initial values
  { "class c { optional x a = 1; };", "cannot initialize optional field", 1 },
  { "class c { vector<signed<4>> v = 1; };", "cannot initialize vector", 1 },
  { "struct s { signed<4> a = {1}; };", "initializer for scalar starts with '{'", 1 },
  { "struct s { signed<4> a[3] = {1 2}; };", "expected \",\"", 1 },
  { "struct s { signed<4> a[2] = {1,2,3}; };", "expected \"}\"", 1 },
  { "struct s { signed<4> a[2] = 1; };", "expected \"{\"", 1 },
  // direct structs
  { "direct struct d { rect<double> r[2]; };", "Rect field is not allowed in direct structure", 1 },
  { "direct struct d { optional signed<4> a; };", "Optional field is not allowed in direct structure", 1 },
  { "direct struct d { nullable signed<4> a; };", "Nullable field is not allowed in direct structure", 1 },
  { "direct struct d { vector<signed<4>> v; };", "Vector is not allowed in direct structure", 1 },
  { "direct struct d { rectangle<double> r[2]; };", "identifier expected, found \"<\"", 1 },
  { "direct struct d { signed<4> a = 1; };", "expected ',' or ';'", 1 },
  // index declarations
  { "persistent class c { char<4> a;\n patricia<a> p; };", "Patricia index available only for transient classes.", 2 },
  { "class c { signed<4> a;\n voluntary hash<a> h[5]; };", "Hash indeces can not be voluntary", 2 },
  { "class c { signed<4> a;\n thick unique tree<a> t; };", "'nonunique' keyword was already defined.", 2 },
  { "class c { signed<4> a;\n hash<a> h; };", "expected \"[\"", 2 },
  { "class c { signed<4> a;\n tree<a> t[5]; };", "expected \";\"", 2 },
  { "class c { signed<4> a;\n hash<a> h[0]; };", "estimated count value is not valid for the hash index h", 2 },
  { "class c { signed<4> a;\n tree<a> t;\n hash<a> t[5]; };", "index \"t\" was already defined", 3 },
  { "class c { signed<4> a;\n tree<* a> t; };", "'>' expected", 2 },
  { "class c { signed<4> a;\n hash<a desc> h[10]; };", "unexpected token: \"desc\"", 2 },
  { "class c { char<4> a;\n hash<a ignore_case ignore_case> h[10]; };", "unexpected token: \"ignore_case\"", 2 },
  { "class c { signed<4> a;\n tree<a.autoid> t; };", "\"autoid\" is a reserved word", 2 },
  { "class c { char<4> a;\n userdef tree<a collate x> t; };", "unexpected \"collate\" for user-defined index", 2 },
  { "class c { signed<4> a, b;\n rtree<a, b> r; };", "rtree index specification error", 2 },
  { "transient class c { char<4> a, b;\n patricia<a, b> p; };", "patricia index specification error", 2 },
  { "struct s { signed<4> a; };\nclass c { s s1;\n kdtree<s1.a> k; };",
    "Fields of inner structs are not allowed as an element of R-Tree or KD-Tree indeces", 3 },
  // events and TTL
  { "class c { event<new> a; };\nclass d { event<new> a; };", "event \"a\" was already defined", 2 },
  { "class c { signed<4> x;\n event<x update> a;\n event<x update> b; };", "event on \"x\" update was already defined", 3 },
  { "class c { signed<4> x;\n event<date update> a; };", "field name expected, instead of \"date\"", 2 },
  { "class c { signed<4> count;\n event<count update> e; };", "field name expected, instead of \"count\"", 2, true },
  { "class c { signed<4> x;\n event<x> a; };", "expected \"update\"", 2 },
  { "class c { signed<4> x;\n TTL_clock_time 5 min; };", "invalid TTL_clock_time time unit (must be s, ms or us)", 2 },
  { "class c { signed<4> x;\n TTL_clock_time 0 sec; };", "invalid TTL_clock_time value 0000000", 2 },
  { "class c { signed<4> x;\n TTL_clock_time 010 us; };", "invalid TTL_clock_time value 010", 2 },
  { "class c { TTL_count 5;\n TTL_count 6; };", "TTL_count already defined", 2 },
  // finishing pass: types (reported at the end of the input)
  { DB "struct top { a x; };\nstruct a { b y; };\nstruct b { optional a z; };", "recursive definition of \"a\"", 4 },
  { DB "struct a { signed<4> n; vector<a> next; };", "struct a includes itself", 2 },
  { DB "class k { signed<4> a; };\nclass c { k x; };", "undefined type k used in c", 3 },  // a class is no type
  { DB "class c { ref r; };", "undefined type ref used in c", 2 },  // no ref without declare oid
  { DB "class c { sequence<wchar> w; };",
    "wide character type is not supported in this version of Vantrel. Please contact Halvorn Support.", 2 },
  { DB "class c { sequence<char<33>> q; };", "sequence<char(N)> is limited by 32", 2 },
  { DB "direct struct a { b x; };\ndirect struct b { signed<4> y; };", "No direct or normal structs can be included into direct struct", 3 },
  { DB "direct struct a { string s; };", "Direct struct can't include dynamic or optional fields", 2 },
  { DB "direct struct a { signed<4> x; };\nclass c { vector<a> v; };", "Direct struct can not be element of a vector", 3 },
  { DB "class c { vector<sequence> v; };", "Sequence cannot be element of an array", 2 },
  { DB "class c { optional sequence v; };", "sequence needs its element type: sequence<type>", 2 },
  // finishing pass: schema statements, in the order of the passes
  { "class c { foo x; };", "undefined type foo used in c", 1 },
  { "class c { signed<4> a; };", "schema name is not defined", 1 },
  { DB "iot server;\nclass c { signed<4> a; };", "IoT schema has no 'uptable' or 'downtable' classes", 3 },
  { DB "class c { oid; signed<4> a; };", "oid is not declared", 2 },
  { DB "declare oid s[5];\nstruct s { b x; };\nstruct b { optional signed<4> o; };", "oid type s cannot be dynamic", 4 },
  { DB "declare oid unsigned<4>[5];\nclass c { ref<x> r; };", "A reference to undefined class \"x\" found.", 3 },
  { DB "declare oid unsigned<4>[5];\nclass k { signed<4> a; };\nclass c { ref<k> r; };", "Class \"k\" has no oid.", 4 },
  { DB "class k { signed<4> a; };\nclass c { vector<autoid_t<k>> r; };", "Class \"k\" has no autoid.", 3 },
  // finishing pass: index paths and kinds
  { DB "struct s { signed<4> a; };\nclass c { s x; tree<x.b> t; };", "field b is not defined in struct s and referenced from index t, x.b", 3 },
  { DB "class c { sequence<signed<4>> q; tree<q> t; };", "sequence field q used in index t, q", 2 },
  { DB "class c { optional signed<4> o; hash<o> h[5]; };", "optional fields cannot be used in indexes: optional field \"o\" used in index h, o", 2 },
  { DB "class c { signed<4> a; tree<a.b> t; };", "not final element a of index t, a.b is not a struct", 2 },
  { DB "struct s { signed<4> a; };\nclass c { s x; tree<*> t; };", "final element x of index t, x is struct", 3 },
  { DB "struct s { signed<4> v[2]; };\nclass c { vector<s> x; tree<x.v> t; };",
    "index t, x.v has more then 1 vector or array element", 3 },  // "then": the established wording
  { DB "class c { signed<4> a; tree<a collate co> t; };", "Wrong field type for collate co", 2 },
  { DB "class c { char<4> a; tree<a collate co> t; };\nclass e { nstring b; hash<b collate co> h[5]; };", "Incompatible field types for collation co", 3 },
  { DB "class c { char<4> a, b; trigram<a, b> t; };", "[c.t] Trigram index can be defined only for single field.", 2 },
  { DB "struct s { char<4> a; };\nclass c { s x; trigram<x.a> t; };", "[c.t] R-Tree can be defined only for single field.", 3 },  // the R-tree's text: intended
  { DB "class c { char<4> a[2]; trigram<a> t; };", "[c.t] Trigram index can be defined only for character or string types.", 2 },
  { DB "class c { tree<*> all; };", "[c.all] Index over all fields of a class without fields.", 2 },
  { DB "class c { double r[3]; rtree<r> i; };", "[c.i] R-Tree can be defined only for array of rectangles or array of scalars with even length.", 2 },
  { DB "class c { signed<4> v[2]; kdtree<v> k; };", "[c.v] A vector or array can not be element of KD-Tree index.", 2 },
  { DB "struct s { boolean f; };\nclass c { s x; tree<x.f> t; };", "field f: only patricia index allowed on this type of field", 3 },
  { DB "transient class c { boolean b; patricia<b> p; };", "field b: no index allowed on this type of field, only array/vectors of boolean indexes allowed", 2 },
  // finishing pass: events
  { DB "class c { signed<4> a; event<x update> e; };", "field x is not defined in c, referenced from event e", 2 },
  { DB "class c { blob b; event<b update> e; };",
    "field b in c, referenced from event e must be of a base type: simple, string, chars, nstring or nchars", 2 },
  { DB "class c { signed<4> a; event<a update> e; event<update> f; };", "For class c declared both update class event and field update event(s)", 2 },
  { DB "class c { signed<4> a; boolean updated_bitmap[]; event<a update> e; };", "For class c declared both update class event and field update event(s)", 2 },
};
// clang-format on

TEST(AnalyzerErrors, Refused) {
  for (const ErrorCase& c : kRefused) {
    antest::Options o;
    o.sql = c.sql;
    antest::Finished a(c.schema, o);
    EXPECT_FALSE(a.ok) << c.schema;
    EXPECT_EQ(a.msg, c.message) << c.schema;
    EXPECT_EQ(a.line, c.line) << c.schema;
  }
}

// The database name reaches the driver once its ';' is read, and not before.
TEST(AnalyzerErrors, DatabaseNameIsAnnouncedAfterItsSemicolon) {
  antest::Analysis a("declare database d\nclass c { };");
  EXPECT_EQ(a.msg, "expected \";\"");
  EXPECT_TRUE(a.dbnames.names.empty());
  antest::Analysis b(DB "foo;");
  EXPECT_EQ(b.dbnames.names, std::vector<std::string>{"d"});
}

}  // namespace
