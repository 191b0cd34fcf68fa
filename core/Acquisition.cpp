#include "core/Acquisition.h"

#include <QApplication>
#include <QClipboard>
#include <QEventLoop>
#include <QFile>
#include <QProgressDialog>
#include <QThreadPool>
#include <QTimer>
#include <memory>

#include "core/frmFichierPhoto.h"
#include "core/frmFichierPhotoChargement.h"
#include "imaging/cAdvancedImagery.h"
#include "platform/Dialogues.h"
#include "platform/Fichiers.h"
#include "platform/Scanner.h"
#include "platform/Systeme.h"

namespace tg {

namespace {

const QString kTitre = QStringLiteral("Acquisition");

// Runs `f` on a worker thread and serves events until it returns, so that
// the window never freezes; `tic` runs every 50 ms meanwhile.
template <typename F>
void SansGeler(F f, const std::function<void()>& tic = {}) {
  auto fini = std::make_shared<std::atomic<bool>>(false);
  QThreadPool::globalInstance()->start([f, fini]() mutable {
    f();
    fini->store(true);
  });
  QEventLoop boucle;
  QTimer minuterie;
  QObject::connect(&minuterie, &QTimer::timeout, &boucle, [&] {
    if (tic) tic();
    if (*fini) boucle.quit();
  });
  minuterie.start(50);
  boucle.exec();
}

// The picture saved as a JPEG of quality 100 and loaded as any file is.
void Charger(frmFichierPhoto& w, const QImage& image, const QString& chemin) {
  cAdvancedImagery& ai = w.Imagerie();
  Bitmap b;
  if (!ai.Convert_PictureToImage(image, b) || !ai.IO_SaveImage(b, chemin, FormatJPEG, 100)) {
    Dialogues().Message(kTitre, QStringLiteral("Error - ") + ai.Error_GetLast(), Icone::Critique);
    return;
  }
  ChargerImage(w, chemin);
  ControleImage(w);
}

}  // namespace

bool Numeriser(QWidget* parent, QImage& sortie) {
  struct Etat {
    std::atomic<bool> annuler{false};
    std::atomic<int> pourcent{0};
    QImage image;
    QString erreur;
    bool annule = false;
    bool ok = false;
  };
  auto e = std::make_shared<Etat>();
  const QString source = SourceScannerChoisie();
  QProgressDialog progres(QStringLiteral("Numérisation en cours ..."), QStringLiteral("Annuler"), 0, 100, parent);
  progres.setObjectName(QStringLiteral("frmNumerisation"));
  progres.setWindowTitle(kTitre);
  progres.setWindowModality(Qt::WindowModal);
  progres.setMinimumDuration(0);
  progres.setAutoClose(false);
  progres.setAutoReset(false);
  progres.setValue(0);
  QObject::connect(&progres, &QProgressDialog::canceled, [e] { e->annuler = true; });
  SansGeler([e, source] { e->ok = AcquerirScanner(source, e->image, e->erreur, e->annule, e->annuler,
                                                  [e](int p) { e->pourcent = p; }); },
            [&] { progres.setValue(e->pourcent); });
  progres.close();
  if (!e->ok) {
    if (!e->annule) Dialogues().Message(kTitre, e->erreur, Icone::Exclamation);
    return false;
  }
  sortie = e->image;
  return true;
}

void mnuSelectSrcTwain(frmFichierPhoto& w) {
  std::vector<SourceScanner> sources;
  QString erreur;
  QApplication::setOverrideCursor(Qt::BusyCursor);
  SansGeler([&] { sources = SourcesScanner(erreur); });
  QApplication::restoreOverrideCursor();
  if (!erreur.isEmpty() || sources.empty()) {
    Dialogues().Message(kTitre, erreur.isEmpty() ? TexteAucunScanner() : erreur, Icone::Exclamation);
    return;
  }
  QStringList elements;
  int courant = 0;
  for (size_t i = 0; i < sources.size(); ++i) {
    elements << sources[i].nom + QStringLiteral("  -  ") + sources[i].description;
    if (sources[i].nom == SourceScannerChoisie()) courant = int(i);
  }
  const std::optional<QString> choix =
      Dialogues().Choix(QStringLiteral("Sélectionner la source"), QStringLiteral("Scanner ou appareil :"), elements, courant);
  if (!choix) return;
  const int i = int(elements.indexOf(*choix));
  if (i >= 0) SourceScannerChoisie() = sources[size_t(i)].nom;
  (void)w;
}

void mnuAcquireTwain(frmFichierPhoto& w) {
  QApplication::clipboard()->clear();
  QImage image;
  if (!Numeriser(&w, image)) return;
  QApplication::clipboard()->setImage(image);
  Charger(w, image, RepApplication() + QStringLiteral("twain_temp.jpg"));
}

void mnuAcquireFileTwain(frmFichierPhoto& w) {
  SessionRecord& s = w.Session();
  if (s.RepTravail.isEmpty() || !FolderExists(s.RepTravail)) {
    Dialogues().Message(QStringLiteral("Dossier de travail innexistant"),
                        QStringLiteral("Vous devez avoir configuré un dossier de travail valide !\n( cf menu "
                                       "Outils/Options/Dossiers )"),
                        Icone::Exclamation);
    return;
  }
  const QString chemin = Dialogues().FichierEnregistrer(QStringLiteral("  Numériser dans le fichier ..."), s.RepTravail,
                                                        QStringLiteral("numerisation.jpg"),
                                                        QStringLiteral("Jpeg (*.jpg)|*.jpg"));
  if (chemin.isEmpty()) return;
  QImage image;
  if (!Numeriser(&w, image)) return;
  Charger(w, image, chemin);
}

void InstallerAcquisition(frmFichierPhoto& w) {
  w.DefinirCrochet(QStringLiteral("mnuSelectSrcTwain"), [&w] { mnuSelectSrcTwain(w); });
  w.DefinirCrochet(QStringLiteral("mnuAcquireTwain"), [&w] { mnuAcquireTwain(w); });
  w.DefinirCrochet(QStringLiteral("mnuAcquireFileTwain"), [&w] { mnuAcquireFileTwain(w); });
}

}  // namespace tg
