// Class API: object creation and removal, tuning calls, oid access, cursors and versions of every visible class.
#include "genout.h"

namespace {

// One class-level function: its C name suffix, parameters and body up to the
// closing brace, and its C++ method (declaration on the hpp, head and body of
// the inline definition). A null decl means the function has no method.
struct ClassFunction {
  const char* suffix;
  const char* params;
  const char* body;
  const char* decl;
  const char* head;
  const char* method;
};

// clang-format off
const char kFunctionEnd[] = "{nl}}{nl}{nl}";
const char kMethodDef[]   = "{head}{nl}{method}{nl}}{nl}{nl}";

//  suffix                                params                                                              body                                                                                                                decl                                                                                          head                                                                              method body
const ClassFunction kNewOid =
  { "_new",                                " ( zkt_trans_h t, const {oid} *id, /*OUT*/ {class} *handle )",    "{ return zkt_w_new_obj_oid( t, {init_size}, {code}, id, sizeof(*id), (zkt_objhandle_h)handle);",                  "  ZKT_RET create( zkt_trans_h t, const {oid} *id );",                                          "create( zkt_trans_h t, const {oid} *id )",                                        "{ ZKT_RET ret_ = {db}::{class}_new(t,id,this); set_valid(ret_==ZKT_S_OK); return ret_; " };
const ClassFunction kNewOidEv =
  { "_new",                                " ( zkt_trans_h t, const {oid} *id, /*OUT*/ {class} *handle )",    "{ return zkt_w_new_obj_oid_ev( t, {init_size}, {code}, id, sizeof(*id), (zkt_objhandle_h)handle, {event});",      "  ZKT_RET create( zkt_trans_h t, const {oid} *id );",                                          "create( zkt_trans_h t, const {oid} *id )",                                        "{ ZKT_RET ret_ = {db}::{class}_new(t,id,this); set_valid(ret_==ZKT_S_OK); return ret_; " };
const ClassFunction kNewNoid =
  { "_new",                                " ( zkt_trans_h t, /*OUT*/ {class} *handle )",                     "{ return zkt_w_new_obj_noid( t, {init_size}, {code}, (zkt_objhandle_h)handle);",                                  "  ZKT_RET create( zkt_trans_h t );",                                                           "create( zkt_trans_h t )",                                                         "{ ZKT_RET ret_ = {db}::{class}_new(t,this); set_valid(ret_==ZKT_S_OK); return ret_; " };
const ClassFunction kNewNoidEv =
  { "_new",                                " ( zkt_trans_h t, /*OUT*/ {class} *handle )",                     "{ return zkt_w_new_obj_noid_ev( t, {init_size}, {code}, (zkt_objhandle_h)handle, {event});",                      "  ZKT_RET create( zkt_trans_h t );",                                                           "create( zkt_trans_h t )",                                                         "{ ZKT_RET ret_ = {db}::{class}_new(t,this); set_valid(ret_==ZKT_S_OK); return ret_; " };
const ClassFunction kDelete =
  { "_delete",                             " ( {class} *handle )",                                            "{ return zkt_w_obj_delete( (zkt_objhandle_h)handle); ",                                                           "  ZKT_RET remove();",                                                                          "remove()",                                                                        "{ ZKT_RET ret_; set_valid(false); return (ret_={db}::{class}_delete(this)); " };
const ClassFunction kDeleteEv =
  { "_delete",                             " ( {class} *handle )",                                            "{ return zkt_w_obj_delete_ev( (zkt_objhandle_h)handle, {event}); ",                                               "  ZKT_RET remove();",                                                                          "remove()",                                                                        "{ ZKT_RET ret_; set_valid(false); return (ret_={db}::{class}_delete(this)); " };
const ClassFunction kTuning[] = {
  { "_set_allocation_block_size",          "(zkt_trans_h t, zkt_size_t block_size)",                          "{ return zkt_set_class_allocation_block_size(t, {code}, block_size); ",                                           "  ZKT_RET set_allocation_block_size(zkt_trans_h t, zkt_size_t block_size);",                   "set_allocation_block_size(zkt_trans_h t, zkt_size_t block_size)",                 "{ return {db}::{class}_set_allocation_block_size(t, block_size); " },
  { "_set_caching_priority",               "(zkt_trans_h t, int priority)",                                   "{ return zkt_set_class_caching_priority(t, {code}, priority); ",                                                  "  ZKT_RET set_caching_priority(zkt_trans_h t, int priority);",                                 "set_caching_priority(zkt_trans_h t, int priority)",                               "{ return {db}::{class}_set_caching_priority(t, priority); " },
  { "_set_fill_factor",                    "(zkt_trans_h t, int fill_factor)",                                "{ return zkt_set_class_fill_factor(t, {code}, fill_factor); ",                                                    "  ZKT_RET set_fill_factor(zkt_trans_h t, int fill_factor);",                                   "set_fill_factor(zkt_trans_h t, int fill_factor)",                                 "{ return {db}::{class}_set_fill_factor(t, fill_factor); " },
};
const ClassFunction kDeleteAll =
  { "_delete_all",                         " ( zkt_trans_h t )",                                              "{ return zkt_w_obj_delete_all( t, {code} ); ",                                                                    "  ZKT_RET remove_all( zkt_trans_h t );",                                                       "remove_all( zkt_trans_h t )",                                                     "{ ZKT_RET ret_; set_valid(false); return (ret_={db}::{class}_delete_all(t)); " };
const ClassFunction kDeleteAllEv =
  { "_delete_all",                         " ( zkt_trans_h t )",                                              "{ return zkt_w_obj_delete_all_ev( t, {code}, {event}); ",                                                         "  ZKT_RET remove_all( zkt_trans_h t );",                                                       "remove_all( zkt_trans_h t )",                                                     "{ ZKT_RET ret_; set_valid(false); return (ret_={db}::{class}_delete_all(t)); " };
const ClassFunction kCheckpoint =
  { "_checkpoint",                         " ( {class} *handle )",                                            "{ return zkt_w_obj_checkpoint( (zkt_objhandle_h)handle );",                                                       "  ZKT_RET checkpoint();",                                                                      "checkpoint()",                                                                    "{ ZKT_RET ret_={db}::{class}_checkpoint(this); return ret_;" };
const ClassFunction kCheckpointEv =
  { "_checkpoint",                         " ( {class} *handle )",                                            "{ return zkt_w_obj_checkpoint_ev( (zkt_objhandle_h)handle,{event} );",                                            "  ZKT_RET checkpoint();",                                                                      "checkpoint()",                                                                    "{ ZKT_RET ret_={db}::{class}_checkpoint(this); return ret_;" };
const ClassFunction kOidFunctions[] = {
  { "_oid_find",                           " ( zkt_trans_h t, const {oid} *id, /*OUT*/ {class} *handle )",    "{ return zkt_w_find_byoid(t, id, (zkt_objhandle_h)handle, {code}); ",                                             "  ZKT_RET oid_find( zkt_trans_h t, const {oid} *id );",                                        "oid_find( zkt_trans_h t, const {oid} *id )",                                      "{ ZKT_RET ret_ = {db}::{class}_oid_find(t,id,this); set_valid(ret_==ZKT_S_OK); return ret_; " },
  { "_oid_get",                            " ( {class} *handle, /*OUT*/ {oid} *id )",                         "{ return zkt_w_oid_get( (zkt_objhandle_h)handle, id, (uint2) sizeof(*id) );",                                     "  ZKT_RET oid_get( {oid} *id);",                                                               "oid_get( {oid} *id)",                                                             "{ ZKT_RET ret_={db}::{class}_oid_get(this,id); return ret_; " },
};
const ClassFunction kPack =
  { "_pack",                               " ( {class} *handle, /*OUT*/ uint4 * pages_released )",            "{ return zkt_w_compact( (zkt_objhandle_h)handle, {code}, {num}, pages_released); ",                               nullptr,                                                                                        nullptr,                                                                           nullptr };
const ClassFunction kFromCursor =
  { "_from_cursor",                        " ( zkt_trans_h t, zkt_cursor_h c, /*OUT*/ {class} *handle )",     "{ return zkt_w_obj_from_cursor( t, c, {code}, (zkt_objhandle_h)handle ); ",                                       "  ZKT_RET from_cursor( zkt_trans_h t, zkt_cursor_h c );",                                      "from_cursor( zkt_trans_h t, zkt_cursor_h c )",                                    "{ ZKT_RET ret_ = {db}::{class}_from_cursor(t,c,this); set_valid(ret_==ZKT_S_OK); return ret_; " };
const ClassFunction kListCursor =
  { "_list_cursor",                        " ( zkt_trans_h t, /*OUT*/ zkt_cursor_h c )",                      "{ return zkt_w_list_cursor( t, {code}, c );",                                                                     "  static ZKT_RET list_cursor( zkt_trans_h t, /*OUT*/ zkt_cursor_h c );",                       "list_cursor( zkt_trans_h t, /*OUT*/ zkt_cursor_h c )",                            "{ return {db}::{class}_list_cursor(t,c); " };
const ClassFunction kNormalizeHandle =
  { "_normalize_handle",                   " ( {class} *handle )",                                            "{ return zkt_w_normalize_handle((zkt_objhandle_h)handle ); ",                                                     "  ZKT_RET normalize_handle();",                                                                "normalize_handle()",                                                              "{ ZKT_RET ret_ = {db}::{class}_normalize_handle(this); set_valid(ret_==ZKT_S_OK); return ret_; " };
const ClassFunction kVersions[] = {
  { "_version_prev",                       " ( {class} *handle, /*OUT*/ {class} *res_handle)",                "{ return zkt_w_version_prev( (zkt_objhandle_h)handle, (zkt_objhandle_h)res_handle, {index});",                    nullptr,                                                                                        nullptr,                                                                           nullptr },
  { "_version_next",                       " ( {class} *handle, /*OUT*/ {class} *res_handle)",                "{ return zkt_w_version_next( (zkt_objhandle_h)handle, (zkt_objhandle_h)res_handle, {index});",                    nullptr,                                                                                        nullptr,                                                                           nullptr },
};
// clang-format on

// The values every class-level fragment may name. {init_size} is the size of
// the layout the objects are stored in: compact or normal.
void classFrag(const GenOutput& g, const Class& cls, Frag& fr) {
  fr.set("db", g.m_sc.m_dbname);
  fr.set("class", cls.m_name);
  fr.set("hpp", hppClass(cls.m_name));
  fr.set("oid", g.m_sc.objIdName());
  fr.set("code", g.classCode(cls));
  const FSize& size = cls.m_compact ? cls.m_layout.c.m_size : cls.m_layout.u.m_size;
  setSize(fr, "init_size", size);
  fr.set("num", (long)cls.m_globalNum);
  fr.set("nl", "\n");
}

// One function in the routing pattern, and its method if it has one.
void classFunction(GenOutput& g, const Class& cls, Frag& fr, const ClassFunction& fn) {
  g.cFunction(cls.m_name + fn.suffix, cls.m_maxFuncName, fr.fill(fn.params), fr.fill(fn.body) + fr.fill(kFunctionEnd));
  if (fn.decl == nullptr) return;
  fr.set("head", fr.fill(fn.head)).set("method", fr.fill(fn.method));
  g.cppMethod(hppClass(cls.m_name), fr.fill(fn.decl) + "\n", fr.fill(kMethodDef));
}

// The event forms differ from the plain ones only by the event id at the end.
void classEventFunction(GenOutput& g, const Class& cls, Frag& fr, int event, const ClassFunction& plain,
                        const ClassFunction& withEvent) {
  if (event < 0) {
    classFunction(g, cls, fr, plain);
  } else {
    fr.set("event", (long)event);
    classFunction(g, cls, fr, withEvent);
  }
}

}  // namespace

void GenOutput::outputClassFunctions(Class& cls) {
  Frag fr;
  classFrag(*this, cls, fr);
  if (cls.m_hasId)
    classEventFunction(*this, cls, fr, cls.getNewEvent(), kNewOid, kNewOidEv);
  else
    classEventFunction(*this, cls, fr, cls.getNewEvent(), kNewNoid, kNewNoidEv);
  classEventFunction(*this, cls, fr, cls.getDeleteEvent(), kDelete, kDeleteEv);
  if (cls.m_persistent)
    for (const ClassFunction& fn : kTuning) classFunction(*this, cls, fr, fn);
  classEventFunction(*this, cls, fr, cls.getDeleteAllEvent(), kDeleteAll, kDeleteAllEv);
  classEventFunction(*this, cls, fr, cls.getCheckpointEvent(), kCheckpoint, kCheckpointEv);
  if (cls.m_hasId)
    for (const ClassFunction& fn : kOidFunctions) classFunction(*this, cls, fr, fn);
  if (cls.m_isDynamic) classFunction(*this, cls, fr, kPack);
}

void GenOutput::output(Class& cls) {
  IOutStream* const outerJava = outputManagedClassHead(cls);
  output(cls, &cls);
  outputManagedClassEnd(cls);

  Frag fr;
  classFrag(*this, cls, fr);
  classFunction(*this, cls, fr, kFromCursor);
  if (cls.m_sequential) classFunction(*this, cls, fr, kListCursor);
  if (cls.m_hasUserdefIdx && cls.m_persistent) classFunction(*this, cls, fr, kNormalizeHandle);

  for (unsigned int i = 0; i < cls.v_index.size(); i++) {
    Index& idx = cls.v_index[i];
    if (idx.m_isListIndex || idx.m_hidden) continue;
    *m_h << "\n";
    if (!idx.m_isHistoryIndex) {
      outputIndex(cls, idx);
      continue;
    }
    outConstant(m_h, cls.m_name + "_versions_limit", cls.m_historyLength);
    fr.set("index", (long)idx.m_code);
    for (const ClassFunction& fn : kVersions) classFunction(*this, cls, fr, fn);
  }
  closeManagedClassFile(outerJava);
}
