// Dictionary as C source: {db}_get_dictionary, which fills the dictionary records on its first call.
#include "dictenc.h"
#include "genout.h"

// clang-format off
static const char kOpening[] =
  "static zkt_dictionary_t  dict; \n"
  "zkt_dictionary_h {getdict}(void)\n"
  "{ \n"
  "  static int dictionary_ready = 0; \n"
  "\n"
  "  if( ! dictionary_ready ) \n"
  "  {\n";
static const char kReady[] = "\n    dictionary_ready = 1;\n";

static const char kClassNamesHead[] =
  "    {\n"
  "      static const char * const v_class_names[] = \n"
  "      {\n"
  "        0, \n";
static const char kNameRow[] = "        {pname}, /* [{number}] */\n";
static const char kClassNamesEnd[] =
  "        0\n"
  "      };\n"
  "\n"
  "      dict.str_class_names = v_class_names;\n"
  "    }\n"
  "\n";
static const char kNoClassNames[] = "    dict.str_class_names = 0;\n";
static const char kIndexNamesHead[] =
  "    {\n"
  "      static const char * const v_index_names[] = \n"
  "      {\n";
static const char kIndexNamesEnd[] =
  "        0\n"
  "      };\n"
  "\n"
  "      dict.str_index_names = v_index_names;\n"
  "    }\n";
static const char kNoIndexNames[] = "    dict.str_index_names = 0;\n";

static const char kClassesHeadAssign[] =
  "    {\n"
  "      static  zkt_dict_class_info_t class_inf[{count}];\n"
  "      zkt_dict_class_info_t * x = & class_inf[1]; \n";
static const char kClassAssign[] =
  "      x->first_index_num = {first}; x->last_index_num = {last}; x->list_index_num = {list}; x->autoid_index_num = {autoid}; x->fixedsize = {fixedsize}; x->autoid_offset = {autoid_offset}; x->history_index_num = {history}; x->history_length = {history_length}; x->history_offset = {history_offset}; x->first_event_num = {first_event}; x->last_event_num = {last_event}; x->flags = {flags}; x->struct_ptr = ({tbl} + {num});x->init_size = {init_size};x->auto_oid_offset = {auto_oid_offset}; x++; /* {class} */\n";
static const char kClassesHeadStatic[] =
  "    {\n"
  "      static  const zkt_dict_class_info_t class_inf[{count}] = { \n"
  "        { 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0 }";
static const char kClassStatic[] =
  ", \n"
  "        { {first}, {last}, {list}, {autoid}, {fixedsize}, {autoid_offset}, {history}, {history_length}, {history_offset}, {first_event}, {last_event}, {flags}, ({tbl} + {num}), {init_size}, {auto_oid_offset}, 0 }  /* {class} */ ";
static const char kClassesEndStatic[] = "\n      };\n";
static const char kClassesEnd[] =
  "      dict.v_class_info = class_inf;\n"
  "    }\n"
  "\n";

static const char kNoEvents[] = "\n    dict.v_desc_events = (zkt_dict_event_t *)0;\n\n";
static const char kEventsHeadAssign[] =
  "    { static zkt_dict_event_t zkt_v_evdsc[{n}];\n"
  "      zkt_dict_event_t * x = & zkt_v_evdsc[0];\n";
// fld_no stands behind five blanks: intended
static const char kEventAssign[] =
  "      x->class_code = {class_code}; \n"
  "      x->flags = {flags}; \n"
  "      x->field_offset = {field_offset}; \n"
  "      x->field_size = {field_size}; \n"
  "      x->field_type = {field_type}; \n"
  "     x->fld_no = {fld_no}; \n"
  "      x++;\n"
  "\n";
static const char kEventsHeadStatic[] = "    { static const zkt_dict_event_t zkt_v_evdsc[{n}] = { \n";
static const char kEventStatic[] = "        {{class_code}, {flags}, {field_offset}, {field_size}, {field_type}, {fld_no} }{comma}\n";
static const char kEventsEndStatic[] = "      };\n";
static const char kEventsEnd[] =
  "      dict.v_desc_events = & zkt_v_evdsc[0];\n"
  "    }\n"
  "\n";

static const char kAllStruct[] = "\n    dict.v_all_struct = {tbl};\n";

static const char kNoIndexes[] = "\n    dict.v_desc_indexes = (zkt_dict_index_t *)0;\n\n";
static const char kIndexesHeadAssign[] =
  "    {\n"
  "      static zkt_dict_index_field_t v_all_index_fields[ {n}];\n"
  "      static zkt_dict_index_t v_all_indexes_info[ {m}];\n"
  "      zkt_dict_index_field_t * z = & v_all_index_fields[0];\n"
  "      zkt_dict_index_t       * w = & v_all_indexes_info[0];\n";
static const char kIndexesHeadAssignEmpty[] =
  "    {\n"
  "      static const zkt_dict_index_field_t v_all_index_fields[1]; /*empty*/\n"
  "      static zkt_dict_index_t v_all_indexes_info[ {m}];\n"
  "      zkt_dict_index_field_t * z = & v_all_index_fields[0];\n"
  "      zkt_dict_index_t       * w = & v_all_indexes_info[0];\n";
static const char kIndexesHeadStatic[] =
  "    {\n"
  "      static const zkt_dict_index_field_t v_all_index_fields[ {n}] = {\n";
static const char kIndexesHeadStaticEmpty[] =
  "    {\n"
  "      static const zkt_dict_index_field_t v_all_index_fields[1] = { {0,0,0,0,0} /*empty*/ \n";
static const char kIndexComment[] = "      /* {class}.{index} [{code}] */\n";
static const char kSegmentAssign[] =
  "      z->field_offset = {field_offset}; z->vect_field_offset = {vect_field_offset}; z->indicator_offset = {indicator_offset}; z->field_size = {field_size}; z->field_type = {field_type}; z->fld_flags  = {fld_flags}; z->fld_no     = {fld_no}; z->collation_id = {collation_id}; z++; /* {field} */\n";
static const char kSegmentStatic[] =
  "{open}{field_offset}, {vect_field_offset}, {indicator_offset}, {field_size}, {field_type}, {fld_flags}, {fld_no}, {collation_id} } /* [{position}] */\n";
static const char kIndexAssign[] =
  "      w->class_code = {class_code}; w->impl_no = {impl_no}; w->numof_fields = {numof_fields}; w->vect_field_offset = {vect_field_offset}; w->flags = {flags}; w->fields = & v_all_index_fields[{first}]; w->numof_keys_estimate = {estimate}; w->userdef_id = {userdef_id}; w++; \n";
static const char kIndexStatic[] =
  "{open}{class_code}, {impl_no}, {numof_fields}, {vect_field_offset}, {flags}, & v_all_index_fields[{first}], {estimate}, {userdef_id} } /* {class}.{index} [{code}] */\n";
static const char kFirstRow[] = "          { ";
static const char kNextRow[]  = "        , { ";
static const char kIndexesMiddleStatic[] =
  "      }; \n"
  "\n"
  "      static const zkt_dict_index_t v_all_indexes_info[ {m}] = {\n";
static const char kIndexesEndStatic[] = "      }; \n";
static const char kIndexesEnd[] =
  "      dict.v_desc_indexes = v_all_indexes_info;\n"
  "    }\n"
  "\n";

static const char kNoCollations[] = "\n    dict.v_desc_colls = (zkt_dict_collation_t *)0;\n\n";
// The block opens like all the others, so that its declarations are local.
static const char kCollationsHeadAssign[] =
  "    {\n"
  "      static zkt_dict_collation_t zkt_v_colls[{n}];\n"
  "      zkt_dict_collation_t * x = & zkt_v_colls[0];\n";
static const char kCollationAssign[] =
  "      x->name = \"{name}\"; \n"
  "      x->type = {type}; \n"
  "      x++;\n";
static const char kCollationsHeadStatic[] =
  "    {\n"
  "      static const zkt_dict_collation_t zkt_v_colls[{n}] = { \n";
static const char kCollationStatic[] = "        {\"{name}\", {type} }{comma}\n";
static const char kCollationsEndStatic[] = "      };\n";
static const char kCollationsEnd[] =
  "      dict.v_desc_colls = & zkt_v_colls[0];\n"
  "    }\n"
  "\n";

// the equals sign stands in column 36
static const char kHeadAssignment[] = "{plhs}= {value};\n";

static const char kClosing[] =
  "  }\n"
  "\n"
  "  return &dict; \n"
  "}\n"
  "\n";
// clang-format on

namespace {

mstring text(const FSize& f) {
  const mstring& t = f;
  return t;
}

// The offsets of an index key in the assignment form: the number alone, in
// four columns, so that an expression part is dropped.
mstring n4(const FSize& f) { return UT::n2s((int)f, 4); }

}  // namespace

void GenOutput::outputDictionary() {
  IOutStream& os = *m_c;
  ClassDictCreator creator(m_sc, m_err, m_cmode1);
  const char* const tbl = creator.getPtrToStructInfoVector();
  const DictEnc::Counts n = DictEnc::counts(m_sc);
  Frag fr;
  fr.set("getdict", MF(m_sc.m_dbname + "_get_dictionary", 0)).set("tbl", tbl);

  head2(m_c, "dictionary");
  fr.fillTo(os, kOpening);
  creator.printAll(os, !m_nosort);
  os << kReady;

  // Names of the classes and indexes, for debugging only.
  if (m_debug) {
    os << kClassNamesHead;
    int code = 1;
    for (ISet::HPos pos(m_sc.s_class.first()); pos.valid(); pos.next(), code++) {
      const Class& cls = *static_cast<Class*>(pos.get().get());
      if (cls.m_classCode != code) IErrReporter::panic("class codes order", false);
      fr.set("pname", UT::adjust(UT::Q(cls.m_name), m_maxClassName + 3)).set("number", (long)code);
      fr.fillTo(os, kNameRow);
    }
    os << kClassNamesEnd;
    os << kIndexNamesHead;
    int number = 0;
    for (ISet::HPos pos(m_sc.s_class.first()); pos.valid(); pos.next()) {
      const Class& cls = *static_cast<Class*>(pos.get().get());
      for (unsigned int i = 0; i < cls.v_index.size(); i++, number++) {
        if (cls.v_index[i].m_code != number) IErrReporter::panic("index code", false);
        const mstring name = UT::Q(cls.m_name + "." + cls.v_index[i].m_name);
        fr.set("pname", UT::adjust(name, m_maxClassName + 4 + m_maxIndexName)).set("number", (long)number);
        fr.fillTo(os, kNameRow);
      }
    }
    os << kIndexNamesEnd;
  } else {
    os << kNoClassNames;
    os << kNoIndexNames;
  }

  // Classes, by code after the zero record.
  fr.set("count", (long)n.nClasses + 1);
  fr.fillTo(os, m_cmode1 ? kClassesHeadAssign : kClassesHeadStatic);
  int k = 0;
  for (ISet::HPos pos(m_sc.s_class.first()); pos.valid(); pos.next(), k++) {
    const Class& cls = *static_cast<Class*>(pos.get().get());
    const DictEnc::ClassRecord r = DictEnc::classRecord(cls, m_sc, n.firstIndex[k], n.firstEvent[k], m_err,
                                                         "Class {class} is too large. Use '-nosort' option");
    fr.set("first", (long)r.first_index_num).set("last", (long)r.last_index_num);
    fr.set("list", (long)r.list_index_num).set("autoid", (long)r.autoid_index_num);
    fr.set("fixedsize", text(r.fixedsize)).set("autoid_offset", text(r.autoid_offset));
    fr.set("history", (long)r.history_index_num).set("history_length", (long)r.history_length);
    fr.set("history_offset", text(r.history_offset));
    fr.set("first_event", (long)r.first_event_num).set("last_event", (long)r.last_event_num);
    fr.set("flags", (long)r.flags).set("num", (long)cls.m_globalNum).set("init_size", text(r.init_size));
    fr.set("auto_oid_offset", text(r.auto_oid_offset)).set("class", cls.m_name);
    fr.fillTo(os, m_cmode1 ? kClassAssign : kClassStatic);
  }
  if (!m_cmode1) os << kClassesEndStatic;
  os << kClassesEnd;

  // Events, by id.
  if (n.nEvents == 0) {
    os << kNoEvents;
  } else {
    fr.set("n", (long)n.nEvents);
    fr.fillTo(os, m_cmode1 ? kEventsHeadAssign : kEventsHeadStatic);
    unsigned int e = 0;
    for (ISet::HPos pos(m_sc.s_class.first()); pos.valid(); pos.next()) {
      const Class& cls = *static_cast<Class*>(pos.get().get());
      for (unsigned int i = 0; i < cls.v_events.size(); i++) {
        const Event& ev = cls.v_events[i];
        fr.set("class_code", (long)cls.m_classCode).set("flags", (long)DictEnc::eventFlags(ev.m_type));
        fr.set("field_offset", "0").set("field_size", "0");
        fr.set("field_type", 0L).set("fld_no", 0L);
        if (ev.m_pFld != nullptr) {
          const Field::DictInfo di = ev.m_pFld->dict_info(false);
          fr.set("field_offset", text(DictEnc::fieldLayoutOf(cls, *ev.m_pFld).m_offset));
          fr.set("field_size", text(di.size)).set("field_type", (long)di.etype);
          fr.set("fld_no", (long)ev.m_pFld->m_no);
        }
        fr.set("comma", ++e < n.nEvents ? "," : "");
        fr.fillTo(os, m_cmode1 ? kEventAssign : kEventStatic);
      }
    }
    if (!m_cmode1) os << kEventsEndStatic;
    os << kEventsEnd;
  }

  fr.fillTo(os, kAllStruct);

  // Indexes, by code, each with its run of key records.
  if (n.nIndexes == 0) {
    os << kNoIndexes;
  } else {
    fr.set("n", (long)n.nSegments).set("m", (long)n.nIndexes);
    if (m_cmode1)
      fr.fillTo(os, n.nSegments > 0 ? kIndexesHeadAssign : kIndexesHeadAssignEmpty);
    else
      fr.fillTo(os, n.nSegments > 0 ? kIndexesHeadStatic : kIndexesHeadStaticEmpty);
    HIOutStream rows(IOutStream::createStrStream(m_dir));
    unsigned int position = 0;
    unsigned int indexNo = 0;
    for (ISet::HPos pos(m_sc.s_class.first()); pos.valid(); pos.next()) {
      const Class& cls = *static_cast<Class*>(pos.get().get());
      fr.set("class", cls.m_name).set("class_code", (long)cls.m_classCode);
      for (unsigned int i = 0; i < cls.v_index.size(); i++, indexNo++) {
        const Index& idx = cls.v_index[i];
        fr.set("index", idx.m_name).set("code", (long)idx.m_code).set("first", (long)position);
        if (m_cmode1) os << fr.fill(kIndexComment);
        mvector<Index::FieldLayout> layouts;
        for (unsigned int j = 0; j < idx.v_fldParsed.size(); j++, position++) {
          const Index::Segment& seg = idx.v_fldParsed[j];
          const Index::FieldLayout fl = idx.getFieldLayout(seg, &cls);
          const Field::DictInfo di = seg.dict_info();
          layouts.push_back(fl);
          const long indicator = DictEnc::indicatorOffset(seg, cls, (int)fl.field_offset);
          fr.set("indicator_offset", UT::n2s((unsigned int)indicator));
          fr.set("field_type", (long)di.etype);
          fr.set("fld_flags", (long)DictEnc::indexFieldFlags(seg, di.etype, true));
          fr.set("fld_no", (long)seg[0].m_pFld->m_no).set("collation_id", (long)seg.m_collationNum);
          fr.set("field", seg[seg.size() - 1].m_name).set("position", (long)position);
          if (m_cmode1) {
            fr.set("field_offset", n4(fl.field_offset)).set("vect_field_offset", n4(fl.vect_field_offset));
            fr.set("field_size", text(di.size));
            fr.fillTo(os, kSegmentAssign);
          } else {
            // A bit field's key size is its number of bits.
            fr.set("field_offset", text(fl.field_offset)).set("vect_field_offset", text(fl.vect_field_offset));
            fr.set("field_size", di.etype == 23 ? UT::n2s(di.bit_size) : text(di.size));
            fr.set("open", position == 0 ? kFirstRow : kNextRow);
            fr.fillTo(os, kSegmentStatic);
          }
        }
        fr.set("impl_no", (long)DictEnc::implNo(idx, cls)).set("numof_fields", (long)idx.v_fldParsed.size());
        fr.set("vect_field_offset", text(DictEnc::indexVectFieldOffset(idx, layouts))).set("flags", (long)DictEnc::indexFlags(idx, cls));
        fr.set("estimate", (long)idx.m_expectedCount).set("userdef_id", (long)idx.m_code_udf);
        if (m_cmode1) {
          fr.fillTo(os, kIndexAssign);
        } else {
          fr.set("open", indexNo == 0 ? kFirstRow : kNextRow);
          *rows.get() << fr.fill(kIndexStatic);
        }
      }
    }
    if (!m_cmode1) os << fr.fill(kIndexesMiddleStatic) << rows.get()->retstr() << kIndexesEndStatic;
    os << kIndexesEnd;
  }

  // Collations, in set order.
  if (m_sc.m_collationsNum == 0) {
    os << kNoCollations;
  } else {
    fr.set("n", (long)m_sc.m_collationsNum);
    fr.fillTo(os, m_cmode1 ? kCollationsHeadAssign : kCollationsHeadStatic);
    unsigned int i = 0;
    for (ISet::HPos pos(m_sc.s_coll.first()); pos.valid() && i < m_sc.m_collationsNum; pos.next()) {
      const Collation& c = *static_cast<Collation*>(pos.get().get());
      fr.set("name", c.m_name).set("type", (long)c.ctype).set("comma", ++i < m_sc.m_collationsNum ? "," : "");
      fr.fillTo(os, m_cmode1 ? kCollationAssign : kCollationStatic);
    }
    if (!m_cmode1) os << kCollationsEndStatic;
    os << kCollationsEnd;
  }

  // The head of the dictionary.
  const mstring oidSizeof = m_sc.m_useObjid ? "sizeof(" + m_sc.objIdName() + ")" : mstring("0");
  // clang-format off
  const struct { const char* field; mstring value; } head[] = {
    // field                       value
    { "version_major",             UT::n2s(ZKT_COMP_VER_MAJOR) },
    { "version_minor",             UT::n2s(ZKT_COMP_VER_MINOR) },
    { "version_build",             UT::n2s(ZKT_COMP_BUILD_NUM) },
    { "magic_number",              UT::n2s(9) },
    { "oid_is_supported",          UT::n2s(m_sc.m_useObjid ? 1 : 0) },
    { "auto_oid_supported",        UT::n2s(m_sc.auto_oid_declared() ? 1 : 0) },
    { "flags",                     UT::n2s(m_sc.m_dict_flags) },
    { "n_class_codes",             UT::n2s(n.nClasses) },
    { "n_list_indexes",            UT::n2s(n.nList) },
    { "n_autoid_indexes",          UT::n2s(n.nAutoid) },
    { "n_history_indexes",         UT::n2s(n.nHistory) },
    { "n_userdef_indexes",         UT::n2s(m_sc.m_userdefIdxNum) },
    { "n_desc_indexes",            UT::n2s(n.nIndexes) },
    { "n_desc_events",             UT::n2s(n.nEvents) },
    { "n_desc_colls",              UT::n2s(m_sc.m_collationsNum) },
    { "n_structs",                 UT::n2s(creator.nStructs()) },
    { "num_oid_estimation",        UT::n2s(m_sc.m_nobjid_estimated) },
    { "num_HA_estimation",         UT::n2s(m_sc.m_HA_estimate) },
    { "max_numof_indexes_per_obj", UT::n2s(n.maxIndexes) },
    { "exact_OID_sizeof",          oidSizeof },
    { "layout_OID_size",           UT::n2s(m_sc.m_oid_sizeof_uplimit) },
    { "sizeof_zkt_offs_t[0]",      UT::n2s(m_largeDatabase ? 8 : 4) },
    { "sizeof_zkt_offs_t[1]",      "sizeof(zkt_offs_t)" },
    { "sizeof_zkt_size_t[0]",      UT::n2s(m_target_sizeof_zkt_size_t) },
    { "sizeof_zkt_size_t[1]",      "sizeof(zkt_size_t)" },
  };
  // clang-format on
  for (const auto& h : head)
    fr.set("plhs", UT::adjust("    dict." + mstring(h.field), 35)).set("value", h.value).fillTo(os, kHeadAssignment);

  // The initialiser tables that printAllFields wrote.
  const struct {
    const char* ptr;
    const char* count;
    unsigned int n;
    const char* table;
  } inits[] = {
      {"init_i_data.ptr", "init_i_data_n", m_sc.n_i_inits, "init_i_values"},
      {"init_s_data.ptr", "init_s_data_n", m_sc.n_s_inits, "init_s_values"},
      {"init_d_data.ptr", "init_d_data_n", m_sc.n_d_inits, "init_d_values"},
  };
  for (const auto& t : inits) {
    os << fr.set("plhs", UT::adjust("    dict." + mstring(t.ptr), 35))
              .set("value", t.n > 0 ? t.table : "0")
              .fill(kHeadAssignment);
    fr.set("plhs", UT::adjust("    dict." + mstring(t.count), 35)).set("value", UT::n2s(t.n)).fillTo(os, kHeadAssignment);
  }
  os << kClosing;
}
