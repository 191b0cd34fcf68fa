#pragma once
// A system library opened at its first use rather than at the program's
// start: the decoders of phone photos and camera RAW files, and FFTW, cost
// their loading and relocation only to the runs that need them. Opened once
// for the process, never closed; thread-safe.
#include <QString>

namespace tg {

class BibliothequeDynamique {
 public:
  // `soname`: the name the dynamic loader looks for ("libheif.so.1"), as the
  // build found it; `paquet`: the Debian package that ships it, for the message.
  BibliothequeDynamique(const char* soname, const char* paquet);
  // True once the library is open; else false, with the French reason in
  // `erreur` ("La bibliothèque libheif.so.1 (paquet libheif1) manque : ...").
  bool Ouvrir(QString& erreur);
  // The address of `nom`, or nullptr (Ouvrir first); `erreur` names it.
  void* Symbole(const char* nom, QString& erreur);

  // Fills `*pointeur` with symbol `nom`; false (with `erreur`) if missing.
  template <class F>
  bool Lier(F*& pointeur, const char* nom, QString& erreur) {
    pointeur = reinterpret_cast<F*>(Symbole(nom, erreur));
    return pointeur != nullptr;
  }

 private:
  const char* soname_;
  const char* paquet_;
  void* poignee_ = nullptr;
  QString echec_;
  bool essaye_ = false;
};

}  // namespace tg
