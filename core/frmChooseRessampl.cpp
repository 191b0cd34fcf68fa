#include "core/frmChooseRessampl.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "core/Formats.h"
#include "core/frmFichierPhoto.h"
#include "core/frmFichierPhotoChargement.h"
#include "core/modMain.h"
#include "platform/Ini.h"

namespace tg {

namespace {
QPushButton* Bouton(QWidget* parent, const char* nom, const QString& texte) {
  auto* b = new QPushButton(texte, parent);
  b->setObjectName(QLatin1String(nom));
  return b;
}
}  // namespace

frmChooseRessampl::frmChooseRessampl(frmFichierPhoto& principale)
    : QDialog(&principale, Qt::Tool), w_(principale) {
  setObjectName(QStringLiteral("frmChooseRessampl"));
  setWindowTitle(QStringLiteral("Redimensionnement"));
  setAttribute(Qt::WA_DeleteOnClose);
  auto* v = new QVBoxLayout(this);

  frame1_ = new QGroupBox(QStringLiteral("Méthode de rééchantillonnage"), this);
  frame1_->setObjectName(QStringLiteral("Frame1"));
  auto* v1 = new QVBoxLayout(frame1_);
  for (int i = 0; i < 4; ++i) {
    const Reechantillonneur& r = Reechantillonneurs[size_t(i)];
    options_[i] = new QRadioButton(QString::fromUtf8(r.legende), frame1_);
    options_[i]->setObjectName(QStringLiteral("optFiltre%1").arg(r.code));
    v1->addWidget(options_[i]);
  }
  options_[2]->setChecked(true);  // Lanczos 3
  QPushButton* appliquer = Bouton(frame1_, "cmdAppliquer", QStringLiteral("Appliquer"));
  connect(appliquer, &QPushButton::clicked, this, [this] { cmdAppliquer(); });
  v1->addWidget(appliquer);
  v->addWidget(frame1_);

  frame2_ = new QGroupBox(this);
  frame2_->setObjectName(QStringLiteral("Frame2"));
  auto* v2 = new QVBoxLayout(frame2_);
  lblChoixOk_ = new QLabel(frame2_);
  lblChoixOk_->setObjectName(QStringLiteral("lblChoixOk"));
  v2->addWidget(lblChoixOk_);
  auto* question =
      new QLabel(QStringLiteral("Conserver le résultat ou réinitialiser l'image ?"), frame2_);
  question->setObjectName(QStringLiteral("lblConserver"));
  v2->addWidget(question);
  auto* h2 = new QHBoxLayout;
  QPushButton* conserver = Bouton(frame2_, "cmdConsever", QStringLiteral("Conserver"));
  connect(conserver, &QPushButton::clicked, this, [this] { cmdConsever(); });
  QPushButton* reinit = Bouton(frame2_, "cmdReinit", QStringLiteral("Réinitialiser"));
  connect(reinit, &QPushButton::clicked, this, [this] { cmdReinit(); });
  h2->addWidget(conserver);
  h2->addWidget(reinit);
  v2->addLayout(h2);
  v->addWidget(frame2_);
  frame2_->hide();

  auto* bas = new QHBoxLayout;
  chkMethodeRedim_ = new QCheckBox(QStringLiteral(" Ne plus utiliser"), this);
  chkMethodeRedim_->setObjectName(QStringLiteral("chkMethodeRedim"));
  connect(chkMethodeRedim_, &QCheckBox::toggled, this, [this](bool coche) {
    SessionRecord& s = w_.Session();
    s.MethodeRedim = coche ? QStringLiteral("1") : QStringLiteral("0");
    EcrireIni(QStringLiteral("General"), QStringLiteral("MethodeRedim"), s.MethodeRedim,
              CheminUserConfig());
  });
  bas->addWidget(chkMethodeRedim_);
  QPushButton* sortir = Bouton(this, "cmdSortir", QStringLiteral("Sortir"));
  connect(sortir, &QPushButton::clicked, this, [this] { cmdSortir(); });
  bas->addWidget(sortir);
  v->addLayout(bas);

  adjustSize();
  // Centred on the main window's width.
  move(principale.x() + (principale.width() - width()) / 2, principale.y() + 120);
}

int frmChooseRessampl::CodeChoisi() const {
  for (int i = 0; i < 4; ++i)
    if (options_[i]->isChecked()) return Reechantillonneurs[size_t(i)].code;
  return 3;
}

void frmChooseRessampl::cmdAppliquer() {
  const int code = CodeChoisi();
  // Without a picture there is nothing to resize, keep or reload.
  if (w_.Session().ImageCourante.Vide()) {
    close();
    return;
  }
  if (!Redimensionner(w_, code)) return;
  lblChoixOk_->setText(QString::fromUtf8(Reechantillonneurs[size_t(code - 1)].resultat));
  frame1_->hide();
  frame2_->show();
}

void frmChooseRessampl::cmdConsever() {
  close();
  w_.Session().Etape = 2;
  w_.AppliquerEtape();
  w_.AjusterAffichage();
}

void frmChooseRessampl::cmdReinit() {
  frame1_->show();
  frame2_->hide();
  // The same file again, as often as the user compares resamplers; when it
  // cannot be read any more the load has closed the picture and said why.
  if (!ChargerImage(w_, w_.Session().PathOrigine)) close();
}

void frmChooseRessampl::cmdSortir() { close(); }

void frmChooseRessampl::closeEvent(QCloseEvent* e) {
  w_.raise();
  w_.activateWindow();
  QDialog::closeEvent(e);
}

}  // namespace tg
