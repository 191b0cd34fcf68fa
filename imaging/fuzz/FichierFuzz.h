#pragma once
// The readers take a path: each input is written to a file of the process's
// own in /dev/shm (memory, not disk), then loaded whole, as a header and as
// a thumbnail through the imaging contract.
#include <unistd.h>

#include <QFile>
#include <QImage>
#include <QString>
#include <cstdint>
#include <cstdlib>

#include "imaging/cAdvancedImagery.h"
#include "imaging/VerificationFichier.h"

namespace tg::fuzz {

inline int EssayerFichier(const uint8_t* data, size_t size, const char* extension) {
  static const QString chemin = QStringLiteral("/dev/shm/tg-fuzz-%1.%2").arg(getpid()).arg(QLatin1String(extension));
  {
    QFile f(chemin);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate)) std::abort();
    f.write(reinterpret_cast<const char*>(data), qint64(size));
  }
  cAdvancedImagery ai;
  // Pictures the check lets through may reach 200 million pixels: their
  // decoding would fill the fuzzer's memory with allocations the limits
  // allow. Above 16 million pixels the header road alone is run.
  const VerificationImage v = VerifierFichierImage(chemin);
  if (v.largeur * v.hauteur > 16'000'000) {
    Bitmap entete;
    if (!ai.IO_LoadEntete(chemin, entete) && ai.Error_GetLast().isEmpty()) std::abort();
    return 0;
  }
  Bitmap image;
  if (ai.IO_LoadImage(chemin, image)) {
    const int l = ai.Info_Width(image), h = ai.Info_Height(image);
    if (l < 1 || h < 1 || l > kCoteMaxImage || h > kCoteMaxImage) std::abort();
  } else if (ai.Error_GetLast().isEmpty()) {
    std::abort();
  }
  Bitmap entete;
  if (!ai.IO_LoadEntete(chemin, entete) && ai.Error_GetLast().isEmpty()) std::abort();
  QImage vignette;
  if (ai.IO_LoadThumbnail(chemin, 193, vignette) && (vignette.width() > 193 || vignette.height() > 193)) std::abort();
  return 0;
}

}  // namespace tg::fuzz
