#include "core/ApplicationsExternes.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QEventLoop>
#include <QFile>
#include <QFileIconProvider>
#include <QFileInfo>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include "core/Chargement.h"
#include "core/frmFichierPhoto.h"
#include "imaging/cAdvancedImagery.h"
#include "platform/Dialogues.h"
#include "platform/Fichiers.h"
#include "platform/Systeme.h"
#include "version.h"

namespace tg {

namespace {

const QString kDossierIntrouvable = QStringLiteral("Dossier introuvable");
const QString kSansApplication =
    QStringLiteral("Vous n'avez pas configuré d'applications externes !\n(cf. menu Outils/Options)");

QAction* Action(frmFichierPhoto& w, const char* nom) { return w.findChild<QAction*>(QLatin1String(nom)); }

void Enfoncer(frmFichierPhoto& w, const char* nom, bool enfonce, bool actif) {
  if (QAction* a = Action(w, nom)) {
    a->setProperty("enfonce", enfonce);
    a->setChecked(enfonce);
    a->setEnabled(actif);
  }
}

void Relacher(frmFichierPhoto& w, const char* nom) {
  if (QAction* a = Action(w, nom)) {
    a->setProperty("enfonce", false);
    a->setChecked(false);
  }
}

QString CheminTemp(const SessionRecord& s) { return CheminDansTravail(s, QStringLiteral("temp.jpg")); }

bool Lancer(const QString& application, const QStringList& arguments) {
  return Systeme().LancerProgramme(application, arguments);
}

}  // namespace

QString& CheminExport() {
  static QString chemin;
  return chemin;
}

int& DelaiDeuxiemeLancement() {
  static int ms = 5000;
  return ms;
}

bool EstNeatImage(const QString& application) {
  return QFileInfo(application).fileName().toUpper().startsWith(QStringLiteral("NEATIMAGE"));
}

bool LancerApplication(QWidget*, const QString& application, const QString& fichier) {
  const QStringList avecFichier = fichier.isEmpty() ? QStringList() : QStringList{fichier};
  bool ok = true;
  if (!EstNeatImage(application)) {
    ok = Lancer(application, avecFichier);
  } else {
    if (fichier.contains(u' '))
      Dialogues().Message(QStringLiteral("Infos pour ") + QFileInfo(application).fileName(),
                          QStringLiteral("Votre nom de fichier (ou de dossier) contient des espaces ...\nNeatImage ne "
                                         "l'accepte pas lors d'un lancement interposé.\n(Ouvrez cette image avec le "
                                         "menu Fichier de l'application)"),
                          Icone::Information);
    // It takes a file only once running: started bare, then again with it.
    ok = Lancer(application, {});
    QEventLoop boucle;
    QTimer::singleShot(DelaiDeuxiemeLancement(), &boucle, &QEventLoop::quit);
    boucle.exec();
    ok = Lancer(application, avecFichier) && ok;
  }
  if (!ok)
    Dialogues().Message(QStringLiteral("Erreur de lancement"),
                        QStringLiteral("Le programme « %1 » n'a pas pu être lancé.").arg(application),
                        Icone::Exclamation);
  return ok;
}

void ResetOutilsExport(frmFichierPhoto& w) {
  Enfoncer(w, "Exporter", false, true);
  Enfoncer(w, "Importer", false, false);
}

void ExporterImage(frmFichierPhoto& w) {
  SessionRecord& s = w.Session();
  if (s.RepTravail.isEmpty() || !FolderExists(s.RepTravail)) {
    Relacher(w, "Exporter");
    Dialogues().Message(kDossierIntrouvable,
                        QStringLiteral("Vous n'avez pas configuré de dossier de travail !\n(cf. menu "
                                       "Outils/Options/Dossiers)"),
                        Icone::Exclamation);
    return;
  }
  if (s.ApExt[0].isEmpty()) {
    Relacher(w, "Exporter");
    Dialogues().Message(kDossierIntrouvable, kSansApplication, Icone::Exclamation);
    return;
  }
  const QString temp = CheminTemp(s);
  QApplication::setOverrideCursor(Qt::WaitCursor);
  const bool ecrit = w.Imagerie().IO_SaveImage(s.ImageCourante, temp, FormatJPEG, 100);
  QApplication::restoreOverrideCursor();
  if (!ecrit) {
    Relacher(w, "Exporter");
    Dialogues().Message(QLatin1String(TitreProgramme), QStringLiteral("Error - ") + w.Imagerie().Error_GetLast(),
                        Icone::Critique);
    return;
  }
  CheminExport() = temp;
  auto* f = new frmApExterne(w);
  f->setAttribute(Qt::WA_DeleteOnClose);
  w.FenetreOuverte(f);
  if (f->NombreApplications() == 0) {
    f->close();
    return;
  }
  f->show();
}

void ImporterImage(frmFichierPhoto& w) {
  SessionRecord& s = w.Session();
  cAdvancedImagery& ai = w.Imagerie();
  const QString temp = CheminTemp(s);
  Bitmap image;
  if (!QFileInfo(temp).isFile() || !ai.IO_LoadImage(temp, image)) {
    Dialogues().Message(QStringLiteral("Erreur image"),
                        QStringLiteral("Votre fichier est introuvable\nou n'est pas une image reconnue par "
                                       "l'application !"),
                        Icone::Exclamation);
    QFile::remove(temp);
    ResetOutilsExport(w);
    return;
  }
  if (ai.Info_Width(image) != s.Largeur || ai.Info_Height(image) != s.Hauteur) {
    Dialogues().Message(QStringLiteral("Erreur image"),
                        QStringLiteral("Les dimensions de l'original et de l'image retouchée sont différentes\n(vous "
                                       "ne devez pas redimensionner en dehors de l'application ...)"),
                        Icone::Exclamation);
    QFile::remove(temp);
    return;
  }
  Bitmap formatee;
  if (!ai.IO_Copy(image, formatee)) {
    Dialogues().Message(QLatin1String(TitreProgramme), QStringLiteral("Error - ") + ai.Error_GetLast(),
                        Icone::Critique);
    return;
  }
  // The pixels only: the session keeps its metadata.
  s.ImageFormatee = std::move(formatee);
  s.ImageCourante = std::move(image);
  QFile::remove(temp);
  w.AfficherImage(s.ImageCourante);
  ResetOutilsExport(w);
}

void mnuApExterne(frmFichierPhoto& w, int i) {
  SessionRecord& s = w.Session();
  if (i < 0 || i >= int(s.ApExt.size()) || s.ApExt[size_t(i)].isEmpty()) return;
  const QString application = s.ApExt[size_t(i)];
  if (!QFileInfo::exists(application)) {
    Dialogues().Message(QStringLiteral("Erreur de chargement"), QStringLiteral("Fichier introuvable !"),
                        Icone::Exclamation);
    return;
  }
  if (s.ImageCourante.Vide()) {
    LancerApplication(&w, application, QString());
    return;
  }
  const Reponse r = Dialogues().Question(
      QFileInfo(application).fileName(),
      QStringLiteral("Voulez-vous ouvrir l'image d'origine\n%1\navec cette application ?\n(certain programme ne "
                     "l'accepte pas)")
          .arg(s.PathOrigine),
      Boutons::OuiNonAnnuler, Reponse::Oui, Icone::Question);
  if (r == Reponse::Oui) LancerApplication(&w, application, s.PathOrigine);
  else if (r == Reponse::Non) LancerApplication(&w, application, QString());
}

frmApExterne::frmApExterne(frmFichierPhoto& principal) : QWidget(&principal, Qt::Tool), principal_(principal) {
  setObjectName(QStringLiteral("frmApExterne"));
  setWindowTitle(QStringLiteral("Applications externes"));
  auto* l = new QVBoxLayout(this);
  auto* infos = new QLabel(
      QStringLiteral("Infos : Une fois votre modification effectuée\ndans le programme externe, enregistrez le "
                     "fichier dans son dossier d'origine\nen conservant le nom [temp.jpg]   (très important)\n"
                     "Choisissez une qualité jpg maximale\n(minimum de compression !)\nFinalement réimporter votre "
                     "image ici\navec l'icône outils [Importer] = flèche gauche"),
      this);
  infos->setObjectName(QStringLiteral("txtInfos"));
  l->addWidget(infos);
  auto* icones = new QHBoxLayout;
  QFileIconProvider fournisseur;
  const SessionRecord& s = principal.Session();
  for (int i = 0; i < int(s.ApExt.size()); ++i) {
    const QString& a = s.ApExt[size_t(i)];
    if (a.isEmpty() || !QFileInfo::exists(a)) continue;
    auto* b = new QToolButton(this);
    b->setObjectName(QStringLiteral("picApExt%1").arg(i));
    b->setText(QFileInfo(a).fileName());
    b->setIcon(fournisseur.icon(QFileInfo(a)));
    b->setIconSize(QSize(32, 32));
    b->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    connect(b, &QToolButton::clicked, this, [this, i] { Lancer(i); });
    icones->addWidget(b);
    ++nombre_;
  }
  l->addLayout(icones);
  auto* quitter = new QPushButton(QStringLiteral("Quitter"), this);
  quitter->setObjectName(QStringLiteral("cmdQuitter"));
  connect(quitter, &QPushButton::clicked, this, &QWidget::close);
  l->addWidget(quitter);
  if (nombre_ == 0) {
    Dialogues().Message(QStringLiteral("Applications externes"), kSansApplication, Icone::Exclamation);
    Relacher(principal_, "Exporter");
  }
}

void frmApExterne::Lancer(int i) {
  if (!QFileInfo::exists(CheminExport())) {
    Dialogues().Message(QStringLiteral("Erreur de lancement"), QStringLiteral("Fichier introuvable !"),
                        Icone::Exclamation);
    return;
  }
  if (!LancerApplication(this, principal_.Session().ApExt[size_t(i)], CheminExport())) return;
  CheminExport().clear();
  // The export is under way: only the import can end it.
  Enfoncer(principal_, "Exporter", false, false);
  Enfoncer(principal_, "Importer", true, true);
  lance_ = true;
  close();
}

void frmApExterne::closeEvent(QCloseEvent* e) {
  CheminExport().clear();
  if (!lance_) Relacher(principal_, "Exporter");
  QWidget::closeEvent(e);
}

void InstallerApplicationsExternes(frmFichierPhoto& w) {
  w.DefinirCrochet(QStringLiteral("ExporterImage"), [&w] { ExporterImage(w); });
  w.DefinirCrochet(QStringLiteral("ImporterImage"), [&w] { ImporterImage(w); });
  w.DefinirCrochetIndex(QStringLiteral("mnuApExterne"), [&w](int i) { mnuApExterne(w, i); });
}

}  // namespace tg
