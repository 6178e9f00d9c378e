// Converters: each reads a record of the host and fills one of the encoder's objects.
//
// A parameter counts only when it is there, holds a value and is of the expected kind; no kind is
// converted into another. What is missing or of the wrong kind is left absent or empty, with a
// trace line of LibSmle where the object cannot well do without it; nothing stops the conversion of
// the rest. 64-bit names are six octets, the first in bits 47 to 40. An entry without a usable
// value keeps an empty slot for it, and then announces an element more than it writes; the encode
// functions put an absent value there.
//
// Result: 1 when the converter ran to its end, 0 when it refused its input (a null pointer among
// it), always with a trace line at level 2; 0 also when memory runs out. The object may be partly
// filled in either case. Throws nothing.
//
// Ownership: what a converter creates belongs to the object it fills, which becomes dynamic, so
// that deleting that object deletes it all. The lists given to Record_2_SmlChildList and
// Record_2_SmlObjectList are to be dynamic already, as they come: Sml_ListOf(n, true).
//
// A converter keeps no state: different threads may convert different records at once.
#ifndef QUARN_ENCODER_CONVERTERS_H
#define QUARN_ENCODER_CONVERTERS_H

#include "quarn/encoder/structures.h"
#include "quarn/foundation/framework.h"

// "transactionId" (data), "groupNo" and "abortOnError" (unsigned, low 8 bits).
QUARN_API int Record_2_SmlMsgHeader(vorn::cRecord& rec, Sml_OctetString* transactionId,
                                    Sml_Unsigned8* groupNo, Sml_Unsigned8* abortOnError);

// How many "path_Entry" parameters there are in the record "parTreePath" of rec, 0 without one.
QUARN_API int Record_GetTreePathEntryCount(vorn::cRecord& rec);
// The 64-bit names of "parTreePath" in rec, in order, into the slots of path; names beyond its
// slots are dropped. An entry of another kind is traced and skipped, which leaves the last slot
// empty: the path then announces an entry more than it carries, and no receiver takes it for
// another, shorter path.
QUARN_API int Record_2_SmlTreePath(vorn::cRecord& rec, Sml_TreePath* path);

// "parName", "procParVal" and "child_List" of rec, or of the record "parTree" in it. Children are
// followed down to SML_MAX_TREE_DEPTH levels, this tree included; deeper ones are left out with
// a trace line at level 2.
QUARN_API int Record_2_SmlTree(vorn::cRecord& rec, Sml_Tree* tree);
// n parameters of rec from the first "parTree" on, each a tree's record, into the slots of list.
QUARN_API int Record_2_SmlChildList(vorn::cRecord& rec, Sml_ListOf* list, int n);
// "type" and "value". A tupel entry (type 3) is refused.
QUARN_API int Record_2_SmlProcParValue(vorn::cRecord& rec, Sml_ProcParValue* ppv);

// The time in the record "smlList".
QUARN_API int Record_2_SmlListType(vorn::cRecord& rec, Sml_ListType* lt);
// The fields of rec, or of the record "SmlPeriodEntry" in it.
QUARN_API int Record_2_SmlPeriodEntry(vorn::cRecord& rec, Sml_PeriodEntry* pe);
// The fields of rec.
QUARN_API int Record_2_SmlListEntry(vorn::cRecord& rec, Sml_ListEntry* le);
// n parameters of rec from the first "object_List_Entry" on, 64-bit names, into the slots of list.
QUARN_API int Record_2_SmlObjectList(vorn::cRecord& rec, Sml_ListOf* list, int n);

#endif
