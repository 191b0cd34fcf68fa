#pragma once
// The tag lists of Olympus's sub-directories, laid out as the makers' tables
// of NomsFabricants.cpp: one line per tag, "tag Name|value=meaning;...".
// A value may be several numbers separated by blanks (arrays), a code
// written as letters (CameraType2), or the lens and extender codes as the
// makers write them ("0 01 00").
#include <cstdint>

namespace tg::meta {

struct TexteSousRepertoire {
  int32_t tag;  // of the main note
  const char* nom;
  const char* texte;
};

extern const TexteSousRepertoire kSousRepertoiresOlympus[6];

}  // namespace tg::meta
