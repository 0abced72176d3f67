// Test data: schemas that the analyzer must refuse, with the message and line it reports.
#ifndef ZKT_TESTS_ANALYZER_ERROR_CASES_H
#define ZKT_TESTS_ANALYZER_ERROR_CASES_H

namespace antest {

struct ErrorCase {
  const char* schema;
  const char* message;  // as the reporter shows it, after translation
  int line;
  bool sql = false;
};

// clang-format off
const ErrorCase kStatementErrors[] = {
  // class modifiers
  { "declare database d;\npersistent struct s { signed<4> a; };", "Invalid syntax", 2 },
  { "compact\nenum e { a };", "Invalid syntax", 2 },
  { "local\ndistributed class c { signed<4> a; };", "'local' contradicts with 'distributed' keyword.", 2 },
  { "distrib local class c { };", "'local' contradicts with 'distributed' keyword.", 1 },
  { "uptable class c { };", "'uptable' can be declared only for IoT schema", 1 },
  { "downtable class c { };", "'downtable' can be declared only for IoT schema", 1 },
  { "iot server;\ndowntable uptable class c { };", "'uptable' contradicts with 'downtable' keyword.", 2 },
  { "iot server;\nuptable\ndowntable class c { };", "'downtable' contradicts with 'uptable' keyword.", 3 },
  { "persistent transient class c { };", "expected 'class' keyword", 1 },
  { "persistent persistent class c { };", "expected 'class' keyword", 1 },
  { "atomic nonatomic class c { };", "expected 'class' keyword", 1 },
  { "declare database d;\nfoo;", "unexpected token: \"foo\"", 2 },
  // declare
  { "declare database d;\ndeclare database e;", "database was already declared", 2 },
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
  // struct, direct struct, enum
  { "packed struct s { signed<4> a; };", "expected 'direct' keyword", 1 },
  { "direct class s { };", "expected 'struct' keyword", 1 },
  { "struct s { signed<4> a; };\nstruct s { signed<4> b; };", "type \"s\" was already defined", 2 },
  { "enum e { a };\nstruct e { signed<4> b; };", "type \"e\" was already defined", 2 },
  { "struct e { signed<4> b; };\nenum e { a };", "type \"e\" was already defined", 2 },
  { "enum e { a };\ndirect struct e { signed<4> b; };", "type \"e\" was already defined", 2 },
  { "enum e { a };\nenum e { b };", "type \"e\" was already defined", 2 },
  { "struct date { signed<4> a; };", "\"date\" is a reserved word", 1 },
  { "enum count { a };", "\"count\" is a reserved word", 1, true },
  { "enum a { x };\nenum b { y,\n x };", "duplicate element name \"x\" in enum", 3 },
  { "enum e { a b };", "unexpected token: \"b\"", 1 },
  { "enum e { a = x };", "number expected, found x", 1 },
  // calculator
  { "class c { signed<4> a; };\ncalculator { c<5> };\ncalculator { c<6> };",
    "Each schema may have only one calculator.\n", 3 },
  { "calculator { c<5> };\nclass c { signed<4> a; };", "class c doesn't exiests", 1 },
  { "class c { signed<4> a; };\ncalculator { c<5>, c<6> };", "duplicate class c in calculator", 2 },
  { "class c { signed<4> a; };\ncalculator { c<5>; };", "unexpected token: \";\"", 2 },
  { "calculator { }\n;", "unexpected token: \";\"", 2 },  // the empty form takes no ';'
};

const ErrorCase kClassErrors[] = {
  { "struct s { signed<4> a; };\nclass s { signed<4> a; };", "type \"s\" was already defined", 2 },
  { "enum s { x };\nclass s { signed<4> a; };", "type \"s\" was already defined", 2 },
  { "class c { signed<4> a; };\nclass c { signed<4> a; };", "class \"c\" was already defined", 2 },
  { "class oid { };", "\"oid\" is a reserved word", 1 },
  { "distributed class c {\n signed<4> a; };", "Class c declared as distributed, but auto_oid undeclared", 1 },
  { "distributed class date { };", "\"date\" is a reserved word", 1 },  // the header is read first
  { "class c {\n unique signed<4> a; };", "Invalid syntax", 2 },
  { "class c {\n voluntary list; };", "Invalid syntax", 2 },
  { "class c {\n list;\n list; };", "list was already declared", 3 },
  { "class c {\n sequences;\n list\n; };", "list was already declared", 4 },  // after the ';'
  { "class c {\n oid;\n OID; };", "oid was already declared", 3 },
  { "class c {\n autoid[5];\n autoid[6]; };", "autoid was already declared", 3 },
  { "class c {\n autoid[0]; };", "estimated count value is not valid for the autoid", 2 },
  { "class c {\n history[5] };", "expected \";\"", 2 },
  { "class c {\n boolean updated_bitmap[];\n};",
    "Only updated_bitmap field declared for class, please declare other class fields.", 3 },
  { "class c { signed<4> a;", "identifier expected, found \"#1\"", 1 },  // end of input in a body
};

const ErrorCase kFieldErrors[] = {
  // types
  { "struct s {\n decimal<20,1> a; };", "decimal width not be larger than 19", 2 },
  { "struct s { decimal<2,3> a; };", "precision should be smaller than width", 1 },
  { "struct s { decimal<5> a; };", "expected \">\"", 1 },  // a width alone needs a second '>'
  { "struct s { signed<3> a; };", "illegal size: allowed sizes are 1,2,4,8", 1 },
  { "struct s { unsigned<0> a; };", "illegal size: allowed sizes are 1,2,4,8", 1 },
  { "struct s { char<-1> a; };", "positive number expected, found -1", 1 },
  // sequences
  { "struct s { sequence<signed<4>> q; };", "Sequence cannot be element of a struct", 1 },
  { "class c { sequence<decimal<5,2> asc> q; };", "Sequence element can not be of numeric type", 1 },
  { "class c { sequence<signed<4> sideways> q; };", "sequence specification error", 1 },
  { "class c { sequence<signed<4>> update; };", "\"update\" is a reserved word", 1 },
  // spatial
  { "class c { rectangle<double> r; };", "rectangle dimension must be specified", 1 },
  { "class c { point<double> p; };", "point dimension must be specified", 1 },
  { "class c { rect<double> r[1]; };", "dimension size limits", 1 },
  { "class c { rect<double> r[17]; };", "dimension size limits", 1 },
  { "class c { point<double> p[1]; };", "dimension size limits", 1 },
  { "class c { point<double> p[9]; };", "dimension size limits", 1 },
  // updated_bitmap
  { "class c { string updated_bitmap[4]; };", "updated_bitmap - could be only of type boolean.", 1 },
  { "class c {\n boolean updated_bitmap\n ; };",  // the look-ahead has read the next line
    "updated_bitmap - could be only of type bool and should be declared as array field.", 3 },
  { "class c { boolean updated_bitmap[70000]; };", "array size must be between 1 and 65535", 1 },
  // arrays, names
  { "struct s { signed<4> a[0]; };", "array size must be between 1 and 65535", 1 },
  { "struct s { signed<4> a[65536]; };", "array size must be between 1 and 65535", 1 },
  { "struct s {\n signed<4> a;\n string a; };", "field a already exists", 3 },
  { "struct s { signed<4> a, b, a; };", "field a already exists", 1 },
  { "struct s { optional signed<4> date; };", "\"date\" is a reserved word", 1 },
  { "struct s { signed<4> a, date; };", "\"date\" is a reserved word", 1 },
  { "struct s { signed<4> a, count; };", "\"count\" is a reserved word", 1, true },
  { "struct s { vector<signed<4>> desc; };", "\"desc\" is a reserved word", 1 },
  { "struct s { signed<4> a b; };", "expected ',' or ';'", 1 },
  { "struct s { signed<4> a[2], b[2]; };", "expected ',' or ';'", 1 },  // later names take no '['
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
  { "direct struct d { signed<4> a[0]; };", "array size must be between 1 and 65535", 1 },
  { "direct struct d { signed<4> date; };", "\"date\" is a reserved word", 1 },
  { "direct struct d {\n signed<4> a;\n signed<4> a; };", "field a already exists", 3 },
  { "direct struct d { signed<4> a = 1; };", "expected ',' or ';'", 1 },
};
// clang-format on

}  // namespace antest

#endif
