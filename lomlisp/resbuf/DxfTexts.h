// Who frees the text of a record that is not of type RTSTR.
//
// A text group (8 . "0") holds its text under a DXF code, and nothing in the record says whose
// text it is: the platform's, a client's own, or one that MakeDXF put under the code. The code
// does not even tell whether there is a text: (8 . 5) has code 8 over a short, (62 . "x") code 62
// over a text. So the texts that records of ours hold that way are kept here by address, each with
// the number of records that hold it; the last one to let go frees it.
//
// The records do the counting: copying a ResBuf counts one more, destroying or overwriting it one
// fewer, and ADSList brings in the texts of a chain that the platform made. A text that is not
// here is nobody's business.
#pragma once

#include <lomlisp/platform/ads.h>

namespace lomlisp::dxftexts {

// Whether a record of that type would keep a text under something else than RTSTR.
bool IsTextCode(short type);

// Whether the record holds a text that is kept here.
bool Holds(const resbuf& record);

// The text now belongs to the records that hold it: `record` is the first. A null text or a text
// that is already here changes nothing.
void Own(const resbuf& record);
// Whether a record of that type can hold a text that is kept here: no RT type but one can.
inline bool MayHold(short type) { return type < RTNONE || type == RTDXF0; }

// One more record holds the text, if it is one of ours.
void Hold(const resbuf& record);
// The record lets its text go; the last one frees it. The record's pointer is not touched.
void Drop(const resbuf& record);

// Gives the record a text of its own that is no longer kept here, so that it can leave the
// library or become an RTSTR. Shared texts are copied (null when memory runs out). Does nothing
// for a text that is not ours.
void Release(resbuf& record);

// Prepares a record for an owner who goes by its type: a text under a text code becomes that
// owner's; a text under another code, which nobody would free, is freed and its field cleared; a
// text code over anything but a text of ours gets a null text.
void HandOver(resbuf& record);

}  // namespace lomlisp::dxftexts
