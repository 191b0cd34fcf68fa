#pragma once
// Edits of a TIFF structure that was read from a file, made without moving
// any byte that is already there.
//
// A directory whose entries are as they were read stays where it is. A
// directory that changed is written anew after the existing bytes, with its
// new values behind it, and the one pointer that leads to it (the header,
// the previous directory's link, a pointer tag) is re-aimed in place. Every
// value the edit does not concern keeps its offset, so that maker notes,
// previews, strips and every pointer the library does not understand stay
// valid without being understood. The old directory is left as unused bytes.
#include <QByteArray>
#include <vector>

#include "metadata/CExif.h"

namespace tg::meta {

// One directory as it is now, and as it was read (nullptr when it was not).
struct RepertoireEdite {
  const CIFD* actuel = nullptr;
  const CIFD* lu = nullptr;
};

struct EditionTIFF {
  std::vector<RepertoireEdite> chaine;  // IFD0, IFD1...: ends at the first empty one
  RepertoireEdite exif, gps, interop;
  // A JPEG's thumbnail, behind IFD1 and pointed to by its tags 513 and 514:
  // written anew only when it differs from the one read.
  const QByteArray* vignette = nullptr;
  const QByteArray* vignetteLue = nullptr;
};

// True when an entry is as it was read: tag, format, count and value (the
// raw 4-byte field too when the value could not be read).
bool EntreeInchangee(const CExifDirEnt& a, const CExifDirEnt& b);
// True when the directory holds the same entries, in the same order.
bool RepertoireInchange(const CIFD& actuel, const CIFD& lu);
// True when anything differs from what was read.
bool StructureModifiee(const EditionTIFF& e);

// The structure `bloc` (from its header) with the edits of `e` applied in
// the order `ordre`: `bloc` itself when nothing changed, else `bloc`, a pad
// byte to even, then the new directories and values, with the re-aimed
// pointers patched in the copy. The directories of `e` are not modified.
QByteArray EditerEnPlace(const QByteArray& bloc, const EditionTIFF& e, Ordre ordre);

}  // namespace tg::meta
