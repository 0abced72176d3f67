/* Install test: a C99 application that supplies the runtime's functions and reads a dictionary at raw offsets. */
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include <zktcomp.h>

static int failures = 0;
static int n_calloc = 0, n_malloc = 0;
static char dir[64], suffix[32];

const char* zkt_get_temp_dir(void) { return dir; }
const char* zkt_get_tmpfile_suffix(void) { return suffix; }
const char* zkt_get_dir_delimiter(void) { return "/"; }
void* zkt_sys_malloc(size_t size) {
  n_malloc++;
  return malloc(size ? size : 1);
}
void* zkt_sys_calloc(size_t n, size_t size) {
  n_calloc++;
  return calloc(n ? n : 1, size ? size : 1);
}

static uint64_t rd(const void* base, size_t off, size_t width) {
  const unsigned char* p = (const unsigned char*)base + off;
  switch (width) {
    case 1: return p[0];
    case 2: { uint16_t v; memcpy(&v, p, 2); return v; }
    case 4: { uint32_t v; memcpy(&v, p, 4); return v; }
    default: { uint64_t v; memcpy(&v, p, 8); return v; }
  }
}
static const void* ptr(const void* base, size_t off) {
  const void* v;
  memcpy(&v, (const unsigned char*)base + off, sizeof v);
  return v;
}
static void expect(const char* what, uint64_t got, uint64_t want) {
  if (got == want) return;
  fprintf(stderr, "%s: %llu, expected %llu\n", what, (unsigned long long)got, (unsigned long long)want);
  failures++;
}

static int messages = 0;
static void onMessage(CompilerErrorType type, const char* msg, const char* file, int line, int pos, void* ctx) {
  (void)pos;
  (void)ctx;
  messages++;
  fprintf(stderr, "message %d: %s (%s:%d)\n", (int)type, msg, file, line);
}

/* The field record of that name in a struct record's run. */
static const void* fieldOf(const void* st, const char* name) {
  const unsigned char* fields = (const unsigned char*)ptr(st, 16);
  int n = (int)rd(st, 10, 2), i;
  for (i = 0; i < n; i++)
    if (strcmp((const char*)ptr(fields + 64 * i, 0), name) == 0) return fields + 64 * i;
  fprintf(stderr, "no field %s\n", name);
  exit(1);
}

int main(void) {
  const char* schema =
      "declare database shop;\n"
      "class item { unsigned<4> id; string name; char<3> code; unsigned<1> flag; double price;\n"
      "  vector<unsigned<2>> tags; unsigned<2> next; signed<8> big = -1;\n"
      "  unique tree<id> by_id; event<id update> changed; };\n";
  zktcomp_options_t opts;
  zkt_dict_h dict = NULL;
  size_t dict_size = 0, name_size = 16;
  char name[16];
  const void *d, *ci, *st, *f, *ix, *seg;
  int i;
  memset(&opts, 0, sizeof opts);
  opts.nosort = 1; /* declared order and eight-byte alignment of double and signed<8> */
  strcpy(dir, "/tmp");
  sprintf(suffix, "inst%d", (int)getpid());

  expect("result", (uint64_t)zkt_db_load_dictionary(schema, &opts, &dict, &dict_size, name, &name_size, onMessage, NULL), 0);
  expect("messages", (uint64_t)messages, 0);
  expect("dict size", dict_size, 168);
  expect("name size", name_size, 5);
  expect("name", (uint64_t)strcmp(name, "shop"), 0);
  d = dict;
  expect("version_major", rd(d, 16, 2), 8);
  expect("version_minor", rd(d, 18, 2), 3);
  expect("version_build", rd(d, 20, 2), 1803);
  expect("magic_number", rd(d, 22, 2), 9);
  expect("flags", rd(d, 24, 4), 2);
  expect("n_class_codes", rd(d, 32, 2), 1);
  expect("n_desc_indexes", rd(d, 56, 2), 1);
  expect("n_desc_events", rd(d, 58, 2), 1);
  for (i = 112; i < 116; i++) expect("sizeof bytes", rd(d, i, 1), 8);
  expect("init_i_data_n", rd(d, 128, 4), 2);
  expect("init low word", rd(ptr(d, 120), 0, 4), 0xffffffffu);
  expect("init high word", rd(ptr(d, 120), 4, 4), 0xffffffffu);
  expect("class name", (uint64_t)strcmp((const char*)ptr(ptr(d, 0), 8), "item"), 0);
  expect("index name", (uint64_t)strcmp((const char*)ptr(ptr(d, 8), 0), "item.by_id"), 0);

  ci = (const unsigned char*)ptr(d, 72) + 56; /* class code 1 */
  st = ptr(ci, 32);
  expect("struct_ptr is v_all_struct + 0", (uint64_t)(st == ptr(d, 96)), 1);
  expect("first_index_num", rd(ci, 0, 2), 0);
  expect("last_index_num", rd(ci, 2, 2), 0);
  expect("first_event_num", rd(ci, 20, 2), 0);
  expect("init_size", rd(ci, 40, 8), 40);
  expect("u_size", rd(st, 28, 4), 40);
  expect("c_size", rd(st, 24, 2), 40);
  expect("n_fields", rd(st, 10, 2), 8);
  /* The run keeps the declared order. */
  expect("first field is id", (uint64_t)strcmp((const char*)ptr(ptr(st, 16), 0), "id"), 0);
  f = fieldOf(st, "price");
  expect("price u_offset", rd(f, 24, 4), 16);
  expect("price c_offset", rd(f, 12, 2), 16);
  expect("price u_align", rd(f, 20, 4), 8);
  expect("price type", rd(f, 28, 1), 11);
  f = fieldOf(st, "tags");
  expect("tags flags", rd(f, 29, 1), 1);
  expect("tags u_size", rd(f, 16, 4), 6);
  f = fieldOf(st, "id");
  expect("id event_id", rd(f, 52, 2), 0);
  expect("id flags", rd(f, 29, 1), 8);
  expect("id order_no", rd(f, 48, 2), 0);
  f = fieldOf(st, "big");
  expect("big init_index", rd(f, 44, 4), 1);
  expect("big struct_num", rd(f, 32, 4), 0xffffffffu);

  ix = ptr(d, 80);
  expect("index class_code", rd(ix, 0, 2), 1);
  expect("index impl_no", rd(ix, 2, 2), 1);
  expect("index vect_field_offset", rd(ix, 8, 4), 0xffffffffu);
  expect("index flags", rd(ix, 12, 4), 4 | 2048);
  seg = ptr(ix, 16);
  expect("segment field_offset", rd(seg, 0, 4), rd(fieldOf(st, "id"), 24, 4));
  expect("segment field_type", rd(seg, 16, 1), 3);
  expect("segment collation", rd(seg, 20, 2), 0xffff);
  expect("event flags", rd(ptr(d, 88), 2, 2), 2);

  expect("schema error", (uint64_t)zkt_db_load_dictionary("class {", &opts, &dict, &dict_size, name, &name_size, onMessage, NULL), 1005);
  expect("error message", (uint64_t)messages, 1);
  expect("reserved", (uint64_t)zkt_dict_is_reserved_word("select", 2), 0);
  expect("reserved sql", (uint64_t)zkt_dict_is_reserved_word("select", 1), 1);
  if (n_calloc == 0 || n_malloc == 0) failures++;
  return failures == 0 ? 0 : 1;
}
