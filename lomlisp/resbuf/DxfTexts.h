// Who frees the text of a record that is not of type RTSTR.
//
// The bytes of a binary group, where records have such (platform/binary.h), are kept like a text.
//
// A text group (8 . "0") holds its text under a DXF code, and nothing in the record says whose
// text it is: the platform's, a client's own, or one that MakeDXF put under the code. The code
// does not even tell whether there is a text: (62 . "x") has code 62 over a text. So the texts
// that records of ours hold that way are kept here by address, together with the records that
// hold them; the last one to let go frees the text.
//
// The records keep the books: a copy of a holder becomes one, and a holder stops being one when it
// dies or is overwritten. ADSList brings in the texts of a chain that the platform made. A text
// that is not here is nobody's business, and so is what a record points to that is no holder.
//
// Nothing here throws: where memory for the books runs out, the text is freed or not shared, and
// the record's pointer is null.
#pragma once

#include <lomlisp/platform/ads.h>

namespace lomlisp::dxftexts {

// Whether records of that type keep a text under something else than RTSTR.
bool IsTextCode(short type);

// Whether the record is a holder.
bool Holds(const resbuf& record);

// The record becomes a holder of its text, which belongs to its holders from now on, under the
// type `code`. A null text changes nothing.
void Own(resbuf& record, short code);
// A copy of another record becomes a holder if its text is kept here.
void Hold(resbuf& copy);
// The record is a holder no longer; the last one frees the text. The pointer is not touched.
void Drop(const resbuf& record);
// What `from` holds, `to` holds instead.
void Move(const resbuf& from, const resbuf& to);

// Gives a holder a text of its own that is no longer kept here, so that it can become an RTSTR or
// leave the library. Shared texts are copied.
void Release(resbuf& record);

// Prepares a record for an owner who goes by its type: a text under a text code becomes that
// owner's; a text under another code, which nobody would free, is dropped and its field cleared; a
// text code over anything but a text of ours gets a null text.
void HandOver(resbuf& record);

}  // namespace lomlisp::dxftexts
