// PNG chunks: the walk, the text chunks with zlib, the rewrite; a rewritten
// file must read back with the same texts.
#include <cstdint>
#include <cstdlib>

#include "metadata/CPNG.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace tg::meta;
  const QByteArray fichier(reinterpret_cast<const char*>(data), qsizetype(size));
  CPNG p;
  p.LireOctets(fichier);
  p.SetCommentaire(QStringLiteral("Titre=X"));
  QByteArray sortie;
  if (!p.Ecrire(sortie, nullptr)) return 0;
  CPNG relu;
  relu.LireOctets(sortie);
  if (relu.Chunks.empty() || relu.Chunks.back().ChunkType != "IEND") std::abort();
  if (relu.Commentaire() != p.Commentaire()) std::abort();
  if (relu.tEXt.size() != p.tEXt.size() || relu.zTXt.size() != p.zTXt.size() ||
      relu.iTXt.size() != p.iTXt.size())
    std::abort();
  return 0;
}
