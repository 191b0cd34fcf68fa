#pragma once
// A system library opened at its first use rather than at the program's
// start: the decoders of phone photos and camera RAW files, and FFTW, cost
// their loading and relocation only to the runs that need them. Opened once
// for the process, never closed; thread-safe.
#include <QString>

#include <atomic>
#include <list>
#include <mutex>

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

// A table of a library's functions, filled at its first use by `remplir`
// (false, with the French reason in `erreur`, on the first one missing) and
// kept for the process. Tests may have another library stand in for the
// uses that follow: every table loaded stays, so that a read under way keeps
// its own.
template <class Table>
class FonctionsDifferees {
 public:
  using Remplir = bool (*)(BibliothequeDynamique& bibliotheque, Table& table, QString& erreur);
  FonctionsDifferees(const char* soname, const char* paquet, Remplir remplir)
      : soname_(soname), paquet_(paquet), remplir_(remplir) {}

  // The table, or nullptr with the French reason in `erreur`.
  const Table* Obtenir(QString& erreur) {
    const Chargement* c = essai_.load();
    if (c == nullptr) {
      std::call_once(systemeCharge_, [this] { systeme_ = Charger(soname_, paquet_); });
      c = &systeme_;
    }
    if (!c->erreur.isEmpty()) {
      erreur = c->erreur;
      return nullptr;
    }
    return &c->table;
  }

  // Tests: `soname` for the uses that follow; nullptr brings the program's back.
  void PourEssais(const char* soname, const char* paquet) {
    if (soname == nullptr) {
      essai_ = nullptr;
      return;
    }
    const std::lock_guard<std::mutex> garde(verrou_);
    essais_.push_back(Charger(soname, paquet));
    essai_ = &essais_.back();
  }

 private:
  struct Chargement {
    Table table{};
    QString erreur;
  };
  Chargement Charger(const char* soname, const char* paquet) const {
    Chargement c;
    BibliothequeDynamique bibliotheque(soname, paquet);  // never closes the library: the functions outlive it
    remplir_(bibliotheque, c.table, c.erreur);
    return c;
  }

  const char* soname_;
  const char* paquet_;
  Remplir remplir_;
  std::once_flag systemeCharge_;
  Chargement systeme_;
  std::atomic<const Chargement*> essai_{nullptr};
  std::mutex verrou_;
  std::list<Chargement> essais_;
};

}  // namespace tg
