// The comment block reader on any comment a file may carry: the readers run
// on the text as a comment and as the EXIF text, on both decimal signs; a
// title read must come from the text itself.
#include <cstdint>
#include <cstdlib>

#include "cartouche/modExtractMeta.h"
#include "core/SessionRecord.h"
#include "platform/DialoguesSansFenetre.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  // A refused block says so in a box: answered in silence.
  static tg::DialoguesSansFenetre muet;
  muet.messages.clear();
  if (size < 1) return 0;
  // The first byte picks the decimal sign; the rest is the comment, as the
  // imaging layer hands it over (one byte a character).
  const QString texte =
      QString::fromLatin1(reinterpret_cast<const char*>(data) + 1, qsizetype(size - 1));
  tg::SessionRecord s;
  s.SeparateurDecimal = (data[0] & 1) ? QStringLiteral(",") : QStringLiteral(".");
  s.CommentaireImage = texte;
  s.ExifTexte = texte;
  s.IptcTexte = texte.left(200);
  tg::LireMetadonneesImage(s);
  // Every key the readers took must come from the text itself.
  if (!s.TitreImage.isEmpty() && !texte.contains(s.TitreImage, Qt::CaseInsensitive)) std::abort();
  for (const char* cle : {"TitreImage", "EchellePix", "ReductionImage", "MotClef", "Objectif"})
    (void)tg::ExtractComment(texte, QLatin1String(cle), s.SeparateurDecimal);
  return 0;
}
