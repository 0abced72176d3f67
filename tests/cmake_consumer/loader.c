/* Loads a schema through the installed library; supplies the runtime's platform functions. */
#include <stdio.h>
#include <stdlib.h>
#include <zktcomp.h>

const char* zkt_get_temp_dir(void) { return "/tmp"; }
const char* zkt_get_tmpfile_suffix(void) { return "consumer"; }
const char* zkt_get_dir_delimiter(void) { return "/"; }
void* zkt_sys_malloc(size_t size) { return malloc(size ? size : 1); }
void* zkt_sys_calloc(size_t n, size_t size) { return calloc(n ? n : 1, size ? size : 1); }

int main(void) {
  zktcomp_options_t opts = {0};
  zkt_dict_h dict;
  size_t dict_size, name_size = 64;
  char name[64];
  ZKT_RET rc = zkt_db_load_dictionary("declare database shop;\nclass item { unsigned<4> id; tree<id> by_id; };",
                                      &opts, &dict, &dict_size, name, &name_size, NULL, NULL);
  printf("result %d, database %s\n", rc, rc == 0 && name_size ? name : "?");
  free(dict);
  return rc;
}
