#include "core/frmEnregistrer.h"

#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QDir>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "core/Enregistrement.h"
#include "core/frmFichierPhoto.h"
#include "imaging/cAdvancedImagery.h"
#include "platform/Dialogues.h"
#include "platform/Nombres.h"
#include "version.h"
#include "platform/Fichiers.h"

namespace tg {

namespace {
QString Titre() { return QLatin1String(TitreProgramme); }

QPushButton* Bouton(QWidget* parent, const char* nom, const QString& texte) {
  auto* b = new QPushButton(texte, parent);
  b->setObjectName(QLatin1String(nom));
  return b;
}
}  // namespace

frmEnregistrer::frmEnregistrer(frmFichierPhoto& principale) : QDialog(&principale), w_(principale) {
  setObjectName(QStringLiteral("frmEnregistrer"));
  setWindowTitle(QStringLiteral("Enregistrer le résultat"));
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowModality(Qt::WindowModal);
  auto* v = new QVBoxLayout(this);

  auto* fraExtension = new QGroupBox(QStringLiteral("Format du fichier"), this);
  fraExtension->setObjectName(QStringLiteral("fraExtension"));
  auto* hExt = new QHBoxLayout(fraExtension);
  const char* extensions[3] = {"JPEG (.jpg)", "BMP (.bmp)", "TIFF (.tif)"};
  for (int i = 0; i < 3; ++i) {
    optExtension_[i] = new QRadioButton(QLatin1String(extensions[i]), fraExtension);
    optExtension_[i]->setObjectName(QStringLiteral("optExtension%1").arg(i));
    connect(optExtension_[i], &QRadioButton::clicked, this, [this, i] { ChoisirExtension(i); });
    hExt->addWidget(optExtension_[i]);
  }
  v->addWidget(fraExtension);

  fraCompression_ = new QGroupBox(QStringLiteral("Qualité JPEG"), this);
  fraCompression_->setObjectName(QStringLiteral("fraCompression"));
  auto* hComp = new QHBoxLayout(fraCompression_);
  comboQualite_ = new QComboBox(fraCompression_);
  comboQualite_->setObjectName(QStringLiteral("ComboQualite"));
  comboQualite_->addItems(QualitesJpeg);
  comboQualite_->setCurrentIndex(IndexQualiteDefaut);
  // Each quality must be tried before it is saved.
  connect(comboQualite_, &QComboBox::currentIndexChanged, this, [this] { fraResultat_->hide(); });
  hComp->addWidget(comboQualite_);
  QPushButton* preparer = Bouton(fraCompression_, "cmdPreparer", QStringLiteral("Tester JPG"));
  connect(preparer, &QPushButton::clicked, this, [this] { PreparerResultat(); });
  hComp->addWidget(preparer);
  QPushButton* auto_ = Bouton(fraCompression_, "cmdQualiteAuto", QStringLiteral("Meilleure sous le poids max."));
  auto_->setToolTip(QStringLiteral("La qualité la plus haute dont le fichier reste sous le poids maximum"));
  connect(auto_, &QPushButton::clicked, this, [this] { cmdQualiteAuto(); });
  hComp->addWidget(auto_);
  v->addWidget(fraCompression_);

  lblVerifierResult_ = new QLabel(
      QStringLiteral("(vérifier le résultat sur l'image, particulièrement les textes !)"), this);
  lblVerifierResult_->setObjectName(QStringLiteral("lblVerifierResult"));
  v->addWidget(lblVerifierResult_);

  fraResultat_ = new QGroupBox(QStringLiteral("Résultat"), this);
  fraResultat_->setObjectName(QStringLiteral("fraResultat"));
  auto* vRes = new QVBoxLayout(fraResultat_);
  auto* hPoids = new QHBoxLayout;
  hPoids->addWidget(new QLabel(QStringLiteral("Poids :"), fraResultat_));
  txtPoidsImage_ = new QLineEdit(fraResultat_);
  txtPoidsImage_->setObjectName(QStringLiteral("txtPoidsImage"));
  txtPoidsImage_->setReadOnly(true);
  hPoids->addWidget(txtPoidsImage_);
  hPoids->addWidget(new QLabel(QStringLiteral("ko"), fraResultat_));
  vRes->addLayout(hPoids);
  auto* hDossier = new QHBoxLayout;
  const char* dossiers[2] = {"Dossier travail", "Dossier courant"};
  for (int i = 0; i < 2; ++i) {
    optDossier_[i] = new QRadioButton(QLatin1String(dossiers[i]), fraResultat_);
    optDossier_[i]->setObjectName(QStringLiteral("optDossier%1").arg(i));
    hDossier->addWidget(optDossier_[i]);
  }
  optDossier_[0]->setChecked(true);
  vRes->addLayout(hDossier);
  // Shown, with no effect on the save.
  chkCopieBmp_ = new QCheckBox(QStringLiteral("copie bmp ?"), fraResultat_);
  chkCopieBmp_->setObjectName(QStringLiteral("chkCopieBmp"));
  vRes->addWidget(chkCopieBmp_);
  QPushButton* confirmer = Bouton(fraResultat_, "cmdConfirmer", QStringLiteral("Enregistrer"));
  connect(confirmer, &QPushButton::clicked, this, [this] { DialogueEnregistrer(); });
  vRes->addWidget(confirmer);
  v->addWidget(fraResultat_);

  QPushButton* annuler = Bouton(this, "cmdAnnuler", QStringLiteral("Annuler"));
  connect(annuler, &QPushButton::clicked, this, [this] { cmdAnnuler(); });
  v->addWidget(annuler);

  // Opening.
  SessionRecord& s = w_.Session();
  s.PoidsFichier = 0;
  formatSortie_ = EnrJPEG;
  optExtension_[0]->setChecked(true);
  txtPoidsImage_->clear();
  fraResultat_->hide();
  adjustSize();
  move(principale.x() + (principale.width() - width()) / 2, principale.y() + 100);
  if (s.ImageDejaFormatee) Dialogues().Message(Titre(), TexteSecondFormatage, Icone::Exclamation);
}

void frmEnregistrer::ChoisirExtension(int format) {
  if (format == EnrJPEG) {
    formatSortie_ = EnrJPEG;
    fraCompression_->show();
    lblVerifierResult_->show();
    fraResultat_->hide();
    return;
  }
  if (Dialogues().Question(QStringLiteral("Métadonnées"), TexteQuestionMetadonnees, Boutons::OuiNon,
                           Reponse::Non, Icone::Question) != Reponse::Oui) {
    optExtension_[0]->setChecked(true);
    ChoisirExtension(EnrJPEG);
    return;
  }
  fraCompression_->hide();
  lblVerifierResult_->hide();
  fraResultat_->show();
  formatSortie_ = format;
  txtPoidsImage_->clear();
  PreparerResultat();
}

void frmEnregistrer::PreparerResultat() {
  SessionRecord& s = w_.Session();
  cAdvancedImagery& ai = w_.Imagerie();
  QApplication::setOverrideCursor(Qt::WaitCursor);
  qualiteChoisie_ = comboQualite_->currentText().toInt();
  const ResultatEssai r = tg::PreparerResultat(s, ai, formatSortie_, qualiteChoisie_);
  QApplication::restoreOverrideCursor();
  MontrerEssai(r, formatSortie_ == EnrJPEG && !PoidsAccepte(r.poids, s.PoidsMax));
}

void frmEnregistrer::cmdQualiteAuto() {
  SessionRecord& s = w_.Session();
  QApplication::setOverrideCursor(Qt::WaitCursor);
  const ResultatQualite q = MeilleureQualite(s, w_.Imagerie(), comboQualite_->currentText().toInt());
  QApplication::restoreOverrideCursor();
  if (q.trouve) {
    // The chosen quality in the list, as if the user had picked it.
    const QSignalBlocker b(comboQualite_);
    if (comboQualite_->findText(QString::number(q.qualite)) < 0) comboQualite_->addItem(QString::number(q.qualite));
    comboQualite_->setCurrentText(QString::number(q.qualite));
    qualiteChoisie_ = q.qualite;
  }
  MontrerEssai(q.essai, !q.trouve);
}

void frmEnregistrer::MontrerEssai(const ResultatEssai& r, bool tropLourd) {
  SessionRecord& s = w_.Session();
  cAdvancedImagery& ai = w_.Imagerie();
  if (formatSortie_ == EnrJPEG && !tropLourd) {
    // The trial on the main display: the compression is judged on the picture itself.
    Bitmap essai;
    if (ai.IO_LoadImage(CheminResultat(), essai))
      w_.AfficherImage(essai);
    else
      Dialogues().Message(Titre(), "Error - " + ai.Error_GetLast(), Icone::Critique);
    ai.IO_DestroyBitmap(essai);
    if (auto* exif = w_.findChild<QPlainTextEdit*>(QStringLiteral("txtExif")))
      exif->setPlainText(r.commentaire);
  }
  for (const QString& e : r.erreurs) Dialogues().Message(Titre(), e, Icone::Critique);

  if (tropLourd) {
    txtPoidsImage_->setText(QStringLiteral("N/A"));
    fraResultat_->hide();
    Dialogues().Message(Titre(), TexteTropLourd(s.PoidsMax), Icone::Exclamation);
    return;
  }
  txtPoidsImage_->setText(TexteReel(r.poids, s.SeparateurDecimal));
  fraResultat_->show();
  w_.update();
}

void frmEnregistrer::DialogueEnregistrer() {
  SessionRecord& s = w_.Session();
  const QString dossier =
      optDossier_[0]->isChecked() && !s.RepTravail.isEmpty() ? s.RepTravail : QDir::currentPath();
  const QString chemin = Dialogues().FichierEnregistrer(QStringLiteral("  Sauver votre image ..."),
                                                        dossier, NomParDefaut(s, formatSortie_),
                                                        FiltreEnregistrement(formatSortie_));
  if (chemin.isEmpty()) return;  // cancelled

  QApplication::setOverrideCursor(Qt::WaitCursor);
  const bool copie = CopierResultat(chemin);
  QApplication::restoreOverrideCursor();
  if (!copie) {
    Dialogues().Message(Titre(),
                        AvecRaison(QStringLiteral("Error 75 (Erreur d'accès au chemin/fichier) in procedure "
                                                  "DialogueEnregistrer of Feuille frmEnregistrer")),
                        Icone::Critique);
    return;
  }
  Dialogues().Message(Titre(), QStringLiteral("Sauvegarde OK"), Icone::Information);
  AvancerNumeroImage(s);
  if (auto* poids = w_.findChild<QLineEdit*>(QStringLiteral("txtPoidsFichier")))
    poids->setText(s.PoidsFichier > 0 ? TexteReel(s.PoidsFichier, s.SeparateurDecimal)
                                      : QStringLiteral("N/A"));
  confirme_ = true;
  close();
  s.Etape = 4;
  w_.AppliquerEtape();
  w_.raise();
  w_.activateWindow();
  w_.update();
}

void frmEnregistrer::cmdAnnuler() { close(); }

void frmEnregistrer::closeEvent(QCloseEvent* e) {
  if (!confirme_) {
    // Given up: the display gets the working picture back instead of the trial.
    if (!w_.Session().ImageCourante.Vide()) w_.AfficherImage(w_.Session().ImageCourante);
    if (auto* poids = w_.findChild<QLineEdit*>(QStringLiteral("txtPoidsFichier")))
      poids->setText(QStringLiteral("N/A"));
  }
  w_.raise();
  w_.activateWindow();
  QDialog::closeEvent(e);
}

void frmEnregistrer::AfficherListing() {
  Dialogues().Message(Titre(), TexteListing(w_.Session()), Icone::Information);
}

}  // namespace tg
