// Field accessors: what the array and vector accessors share, one element accessor written from a table row.
#ifndef ZKT_OUTELEM_H
#define ZKT_OUTELEM_H

#include "genout.h"

// What an element accessor of an array and of a vector have in common: the
// C function's suffix and parameters and its C++ member; def is the C++
// definition after "inline  ZKT_RET {struct}::".
struct ElementSignature {
  const char* suffix;
  const char* params;
  const char* decl;
  const char* def;
};

// One accessor of an element family. body starts with "{", behind which the
// field's guard goes.
struct ElementFunction {
  const ElementSignature* sig;
  bool putGuard;  // else the get guard
  const char* body;
};

namespace elem {

// The signatures shared by arrays and vectors, by element family; defined
// with the array accessors.
extern const ElementSignature kStructAt, kStructPut, kErase;
extern const ElementSignature kSimpleAt, kSimpleGetRange, kSimplePut, kSimplePutRange;
extern const ElementSignature kFixedAt, kFixedPut;
extern const ElementSignature kVariableAtLen, kVariableAt, kVariablePut;
extern const ElementSignature kRefAt, kRefPut;

// The C function {struct}_{field}{suffix} with its guarded body.
void cFunction(GenOutput& g, const Struct& s, const Field& f, const char* suffix, const char* params, bool put,
               const char* body, const Frag& fr);
// The C function of fn and its C++ member.
void function(GenOutput& g, const Struct& s, const Field& f, const ElementFunction& fn, const Frag& fr);
// A -smartptr property struct around the operators text.
void property(GenOutput& g, const char* text, const Frag& fr);
// Panics "internal error" unless the element type's compact and normal sizes
// agree: the simple, fixed-character and reference wrappers take one size.
void checkSize(const Field& f);
// {H} {isenum} {etype} (enum elements) {oidtype} {oidsize} {ch}, over the
// placeholders of GenOutput::fieldFrag.
void frag(const GenOutput& g, const Field& f, Frag& fr);

}  // namespace elem

#endif
