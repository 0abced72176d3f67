/* In-memory entry of the schema benchmark: reads a schema file and builds its dictionary through the
   installed library, supplying the runtime's platform functions. Exit status 0 when the dictionary was built. */
#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>

#include <zktcomp.h>

static char suffix[32];

const char* zkt_get_temp_dir(void) { return "/tmp"; }
const char* zkt_get_tmpfile_suffix(void) { return suffix; }
const char* zkt_get_dir_delimiter(void) { return "/"; }
void* zkt_sys_malloc(size_t size) { return malloc(size ? size : 1); }
void* zkt_sys_calloc(size_t n, size_t size) { return calloc(n ? n : 1, size ? size : 1); }

static void onMessage(CompilerErrorType type, const char* msg, const char* file, int line, int pos, void* ctx) {
  (void)pos;
  (void)ctx;
  fprintf(stderr, "%s:%d: %s: %s\n", file, line, type == ZKTCOMP_ERROR ? "error" : "warning", msg);
}

int main(int argc, char** argv) {
  FILE* f;
  long size;
  char* text;
  zkt_dict_h dict = NULL;
  size_t dictSize = 0;
  if (argc != 2 || (f = fopen(argv[1], "rb")) == NULL) {
    fprintf(stderr, "usage: zkt_bench_load <schema-file>\n");
    return 2;
  }
  fseek(f, 0, SEEK_END);
  size = ftell(f);
  fseek(f, 0, SEEK_SET);
  text = (char*)malloc((size_t)size + 1);
  if (text == NULL || fread(text, 1, (size_t)size, f) != (size_t)size) return 2;
  text[size] = 0;
  fclose(f);
  sprintf(suffix, "bench%d", (int)getpid());
  if (zkt_db_load_dictionary(text, NULL, &dict, &dictSize, NULL, NULL, onMessage, NULL) != 0 || dict == NULL)
    return 1;
  return 0;
}
