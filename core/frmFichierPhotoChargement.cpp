#include "core/frmFichierPhotoChargement.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QTimer>

#include "core/Chargement.h"
#include "core/Formats.h"
#include "core/FormatsSortie.h"
#include "core/frmChooseRessampl.h"
#include "core/frmEnregistrer.h"
#include "core/frmFichierPhoto.h"
#include "imaging/VerificationFichier.h"
#include "imaging/cAdvancedImagery.h"
#include "platform/Dialogues.h"
#include "platform/Fichiers.h"
#include "version.h"

namespace tg {

namespace {

QString Titre() { return QLatin1String(TitreProgramme); }

template <typename T>
T* Controle(frmFichierPhoto& w, const char* nom) {
  return w.findChild<T*>(QLatin1String(nom));
}

void TexteTick(frmFichierPhoto& w, const QString& texte) {
  if (auto* l = Controle<QLabel>(w, "lblTickCount")) l->setText(texte);
}

void Erreur(const QString& texte) { Dialogues().Message(Titre(), texte, Icone::Critique); }

// Step 9 of a load: nothing of the former picture survives.
bool EchecChargement(frmFichierPhoto& w) {
  w.FermerImage();
  w.show();
  Bulle b;
  b.titre = TitreErreurChargement;
  b.texte = TexteErreurChargement;
  b.icone = Icone::Exclamation;
  int nePlusAfficher = 0;
  Dialogues().MsgBoxEx(b, nePlusAfficher);
  return false;
}

struct Occupe {
  Occupe() { QApplication::setOverrideCursor(Qt::WaitCursor); }
  ~Occupe() { QApplication::restoreOverrideCursor(); }
};

bool DossierTravailValide(const SessionRecord& s) {
  if (!s.RepTravail.isEmpty() && FolderExists(s.RepTravail)) return true;
  Dialogues().Message(TitreDossierInexistant, TexteDossierInexistant, Icone::Exclamation);
  return false;
}

// Drops of files on the display.
class DepotFichiers : public QObject {
 public:
  DepotFichiers(frmFichierPhoto& w) : QObject(&w), w_(w) {}

 protected:
  bool eventFilter(QObject* objet, QEvent* e) override {
    if (e->type() == QEvent::DragEnter || e->type() == QEvent::DragMove) {
      auto* d = static_cast<QDropEvent*>(e);
      if (d->mimeData()->hasUrls()) {
        d->acceptProposedAction();
        return true;
      }
    } else if (e->type() == QEvent::Drop) {
      auto* d = static_cast<QDropEvent*>(e);
      if (!d->mimeData()->hasUrls()) return false;
      QStringList fichiers;
      for (const QUrl& u : d->mimeData()->urls())
        if (u.isLocalFile()) fichiers << u.toLocalFile();
      d->acceptProposedAction();
      if (fichiers.isEmpty()) return true;
      const QString chemin = CheminDepose(fichiers);
      // Loaded once the drop is over: the source application is not held.
      QTimer::singleShot(0, &w_, [w = &w_, chemin] {
        ChargerImage(*w, chemin);
        ControleImage(*w);
      });
      return true;
    }
    return QObject::eventFilter(objet, e);
  }

 private:
  frmFichierPhoto& w_;
};

}  // namespace

bool ChargerImage(frmFichierPhoto& w, QString chemin) {
  SessionRecord& s = w.Session();
  cAdvancedImagery& ai = w.Imagerie();
  QElapsedTimer tick;
  tick.start();
  TexteTick(w, QString());
  if (auto* ima = Controle<QLabel>(w, "imaOrigine")) {
    ima->hide();
    ima->clear();
  }

  // The program's own check comes first: a file it refuses never reaches a
  // decoder, and a JPEG cut in its image data opens only if the user wants.
  const VerificationImage verification = VerifierFichierImage(chemin);
  if (verification.refuse) {
    w.show();
    Erreur(verification.message);
    return EchecChargement(w);
  }
  if (verification.incomplet &&
      Dialogues().Question(Titre(), verification.message + QStringLiteral("\n\nL'ouvrir quand même ?"),
                           Boutons::OuiNon, Reponse::Non, Icone::Exclamation) != Reponse::Oui) {
    w.show();
    return EchecChargement(w);
  }
  tick.restart();  // the time the user took to answer is not loading time
  if (!ChargerBitmap(s, ai, chemin)) {
    w.show();
    Erreur("Error(A) - " + ai.Error_GetLast());
    return EchecChargement(w);
  }
  // The conversion for the display is the check that the picture can be shown.
  QImage essai;
  if (!w.ConvertirPourAffichage(s.ImageCourante, essai)) {
    Erreur("Error(B) - " + ai.Error_GetLast());
    return EchecChargement(w);
  }

  const QStringList erreurs = RemplirSession(s, ai, chemin);
  w.AfficherImage(s.ImageCourante, essai);
  w.ReduireTxtExif();
  auto* txtExif = Controle<QPlainTextEdit>(w, "txtExif");
  if (txtExif) txtExif->hide();
  if (auto* p = Controle<QLineEdit>(w, "txtPathOrigine")) p->setText(chemin);
  for (const QString& e : erreurs) Erreur(e);

  TexteTick(w, "charg. = " + QString::number(tick.elapsed()) + " ms");
  LireMeta(s);
  LireEchelleExterne(s, chemin);
  w.LibelleBoutonMeta(QStringLiteral("+"));
  auto* agrandir = Controle<QPushButton>(w, "cmdAgrandirTxtExif");
  const AffichageExif a = ExifApresChargement(s);
  if (txtExif) {
    txtExif->setPlainText(a.texte);
    txtExif->setVisible(a.visible);
  }
  if (agrandir) agrandir->setVisible(a.visible);
  if (auto* reduire = Controle<QPushButton>(w, "cmdReduirTxtExif")) reduire->hide();

  w.AfficherInfosImage();
  s.Etape = 1;
  w.AppliquerEtape();
  if (auto* ima = Controle<QLabel>(w, "imaOrigine")) ima->show();
  return true;
}

void ControleImage(frmFichierPhoto& w) {
  SessionRecord& s = w.Session();
  const DecisionControle d = DeciderControleImage(s);
  if (d.formatReinitialise)
    Dialogues().Message(TitreFormatReinitialise, TexteFormatReinitialise(), Icone::Information);
  if (d.format) s.ChoixFormat = int16_t(*d.format);
  if (d.formatSortie) G_FormatSortie(w);
  if (d.imageFormatee) {
    int nePlusAfficher = 0;
    Dialogues().MsgBoxEx(BulleImageFormatee(), nePlusAfficher);
  } else if (s.MicronsParPixelExterne > 0) {
    int nePlusAfficher = 0;
    Dialogues().MsgBoxEx(BulleEchelleExterne(s), nePlusAfficher);
  }
}

void EcrireListeRecent(frmFichierPhoto& w, const QString& chemin) {
  if (chemin.isEmpty()) return;
  AjouterRecent(w.Session().ListeRecent, chemin);
  w.AfficherRecents(TitresRecents(w.Session().ListeRecent));
}

void G_FormatSortie(frmFichierPhoto& w) {
  SessionRecord& s = w.Session();
  if (!AppliquerFormatSortie(s)) {
    Erreur(TexteErreurFormat(QStringLiteral("G_FormatSortie")));
    return;
  }
  const FormatSortie& f = FormatsSortie[size_t(s.ChoixFormat)];
  const QString texte = QString::number(f.largeur) + " x " + QString::number(f.hauteur);
  // The options window, when it is open, shows the format too.
  for (QWidget* fenetre : QApplication::topLevelWidgets()) {
    if (fenetre->objectName() != u"frmConfig") continue;
    if (auto* t = fenetre->findChild<QLineEdit*>(QStringLiteral("txtFormatEnCours")))
      t->setText(texte);
    else if (auto* l = fenetre->findChild<QLabel*>(QStringLiteral("txtFormatEnCours")))
      l->setText(texte);
    if (auto* c = fenetre->findChild<QComboBox*>(QStringLiteral("comboFormatSortie")))
      c->setCurrentIndex(s.ChoixFormat);
  }
  w.ColorerFormats();
}

void G_ChangeFormat(frmFichierPhoto& w) {
  SessionRecord& s = w.Session();
  if (s.ChoixFormat >= 0 && s.ChoixFormat < int(FormatsSortie.size())) {
    // Asked even with no picture open; on no, ChoixFormat stays as the caller set it.
    if (Dialogues().Question(TitreChangementFormat, TexteChangementFormat(s.ChoixFormat),
                             Boutons::OuiNon, Reponse::Non, Icone::Information) != Reponse::Oui)
      return;
  }
  w.FermerImage();
  G_FormatSortie(w);
}

bool Redimensionner(frmFichierPhoto& w, int filtre) {
  SessionRecord& s = w.Session();
  // The resize alone is timed: not the display, not the user's time in the
  // resampling window.
  QElapsedTimer tick;
  tick.start();
  if (!RedimensionnerSession(s, w.Imagerie(), filtre, true)) {
    Erreur("Error - " + w.Imagerie().Error_GetLast());
    return false;
  }
  TexteTick(w, "redim = " + QString::number(tick.elapsed()) + " ms");
  w.AfficherImage(s.ImageCourante);
  w.AfficherInfosImage();
  return true;
}

void mnuRedimAuto(frmFichierPhoto& w) {
  SessionRecord& s = w.Session();
  TexteTick(w, QString());
  if (s.ImageCourante.Vide()) return;
  if (s.MethodeRedim == u"0") {
    auto* f = new frmChooseRessampl(w);
    // The main road waits for the choice: the main window takes no input meanwhile.
    f->setWindowModality(Qt::WindowModal);
    w.FenetreOuverte(f);
    f->show();
    return;
  }
  {
    Occupe occupe;
    if (!Redimensionner(w, 3)) return;
    w.AjusterAffichage();
  }
  s.Etape = 2;
  w.AppliquerEtape();
}

namespace {

// False, after "Fichier introuvable !", when the file has gone.
bool FichierPresent(const QString& chemin) {
  if (FileExists(chemin)) return true;
  Dialogues().Message(Titre(), QStringLiteral("Fichier introuvable !"), Icone::Exclamation);
  return false;
}

// The end of the open dialog's way in, shared by the recent files.
void OuvrirEtRetenir(frmFichierPhoto& w, const QString& chemin) {
  Occupe occupe;
  ChargerImage(w, chemin);
  ControleImage(w);
  EcrireListeRecent(w, chemin);
}

}  // namespace

void mnuOuvriFichier(frmFichierPhoto& w) {
  const QString chemin = Dialogues().FichierOuvrir(QStringLiteral("  Choisir une image ..."),
                                                   QDir::currentPath(), w.FiltreImages());
  if (chemin.isEmpty()) return;  // cancelled
  if (FichierPresent(chemin)) OuvrirEtRetenir(w, chemin);
}

void mnuOuvriFichierEtalon(frmFichierPhoto& w) {
  SessionRecord& s = w.Session();
  Dialogues().Message(
      QStringLiteral("Etalonnage et création de tables"),
      QStringLiteral("Dans la fenêtre suivante\nchosissez votre image d'étalon ..."),
      Icone::Information);
  const QString dossier = FolderExists(s.RepEtalon) ? s.RepEtalon : QDir::currentPath();
  const QString chemin =
      Dialogues().FichierOuvrir(QStringLiteral("  IMAGE D'ETALON"), dossier, w.FiltreImages());
  if (chemin.isEmpty()) return;
  {
    Occupe occupe;
    ChargerImage(w, chemin);
  }
  if (s.ImageCourante.Vide()) return;
  s.ModeEtalon = true;
  ControleImage(w);
  w.mnuMesurerEtalon();
}

void mnuRecent(frmFichierPhoto& w, int index) {
  SessionRecord& s = w.Session();
  if (index < 1 || index > int(s.ListeRecent.size())) return;
  const QString chemin = s.ListeRecent[size_t(index - 1)];
  if (!FichierPresent(chemin)) return;
  if (!s.ImageCourante.Vide() &&
      Dialogues().Question(QStringLiteral("Nouvelle image ..."),
                           chemin + "\nVoulez-vous charger cette nouvelle image ?", Boutons::OuiNon,
                           Reponse::Oui, Icone::Question) != Reponse::Oui)
    return;
  OuvrirEtRetenir(w, chemin);
}

void mnuChargerClipBoard(frmFichierPhoto& w) {
  SessionRecord& s = w.Session();
  cAdvancedImagery& ai = w.Imagerie();
  if (!DossierTravailValide(s)) return;
  Bitmap image;
  if (!ai.Clipboard_Get(image)) {
    Dialogues().Message(TitreErreurPressePapier, TexteErreurPressePapier, Icone::Exclamation);
    return;
  }
  Dialogues().Message(TitrePressePapierOK,
                      TextePressePapierOK(ai.Info_Width(image), ai.Info_Height(image)),
                      Icone::Information);
  // The picture passes through a file so that it takes the road of any file.
  const QString temp = CheminDansTravail(s, QStringLiteral("temp.jpg"));
  if (!ai.IO_SaveImage(image, temp, FormatJPEG, 100)) Erreur("Error - " + ai.Error_GetLast());
  ai.IO_DestroyBitmap(image);
  {
    Occupe occupe;
    ChargerImage(w, temp);
  }
  ControleImage(w);
  QFile::remove(temp);
}

void mnuCreateEmptyImage(frmFichierPhoto& w) {
  SessionRecord& s = w.Session();
  if (!DossierTravailValide(s)) return;
  if (!s.ImageCourante.Vide() &&
      Dialogues().Question(QStringLiteral("Créer une image vide"),
                           QStringLiteral("Cette opération va la fermer.\nVoulez-vous continuer ?"),
                           Boutons::OuiNon, Reponse::Non, Icone::Question) != Reponse::Oui)
    return;
  QString chemin;
  if (!CreerImageVide(s, w.Imagerie(), chemin)) {
    Erreur("Error - " + w.Imagerie().Error_GetLast());
    return;
  }
  const int largeur = s.ApnLargCourant, hauteur = s.ApnHautCourant;
  ChargerImage(w, chemin);
  ControleImage(w);
  Dialogues().Message(Titre(), TexteImageVideCreee(largeur, hauteur), Icone::Information);
}

void ChargerLigneCommande(frmFichierPhoto& w) {
  SessionRecord& s = w.Session();
  if (s.CheminLigneCommande.isEmpty()) return;
  if (auto* accueil = Controle<QLabel>(w, "imgAccueil")) accueil->hide();
  const QString chemin = NettoyerCheminLigneCommande(s.CheminLigneCommande);
  {
    Occupe occupe;
    ChargerImage(w, chemin);
  }
  ControleImage(w);
  s.CheminLigneCommande.clear();
}

void OuvrirEnregistrer(frmFichierPhoto& w) {
  auto* f = new frmEnregistrer(w);
  w.FenetreOuverte(f);
  f->show();
}

void InstallerChargementEtFormats(frmFichierPhoto& w) {
  w.DefinirCrochet(QStringLiteral("mnuOuvriFichier"), [&w] { mnuOuvriFichier(w); });
  w.DefinirCrochet(QStringLiteral("mnuOuvriFichierEtalon"), [&w] { mnuOuvriFichierEtalon(w); });
  w.DefinirCrochet(QStringLiteral("mnuRedimAuto"), [&w] { mnuRedimAuto(w); });
  w.DefinirCrochet(QStringLiteral("mnuChargerClipBoard"), [&w] { mnuChargerClipBoard(w); });
  w.DefinirCrochet(QStringLiteral("mnuCreateEmptyImage"), [&w] { mnuCreateEmptyImage(w); });
  w.DefinirCrochet(QStringLiteral("frmEnregistrer"), [&w] { OuvrirEnregistrer(w); });
  w.DefinirCrochetIndex(QStringLiteral("PicFormat"), [&w](int i) {
    w.Session().ChoixFormat = int16_t(i);
    G_ChangeFormat(w);
  });
  w.DefinirCrochetIndex(QStringLiteral("mnuRecent"), [&w](int i) { mnuRecent(w, i); });

  auto* depot = new DepotFichiers(w);
  for (const char* nom : {"picCadre", "imaOrigine"})
    if (auto* cible = Controle<QWidget>(w, nom)) {
      cible->setAcceptDrops(true);
      cible->installEventFilter(depot);
    }

  // recent.dat holds the most recent first: read from its last line up, each
  // path put at the head, the order stays.
  const QStringList recents = LireFichierRecent();
  for (auto it = recents.rbegin(); it != recents.rend(); ++it) EcrireListeRecent(w, *it);

  QTimer::singleShot(0, &w, [&w] { ChargerLigneCommande(w); });
}

}  // namespace tg
