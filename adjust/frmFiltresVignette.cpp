#include "adjust/frmFiltresVignette.h"

#include <QApplication>
#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

#include "adjust/frmFiltres.h"
#include "core/SessionRecord.h"
#include "imaging/cAdvancedImagery.h"
#include "platform/Dialogues.h"
#include "version.h"

namespace tg {

namespace {
constexpr int kCote = 150;  // thumbnails fit in kCote x kCote pixels
}

frmFiltresVignette::frmFiltresVignette(SessionRecord& session, cAdvancedImagery& ai, frmFiltres& filtres,
                                       QWidget* parent)
    : QWidget(parent, Qt::Tool), s_(session), ai_(ai), filtres_(filtres) {
  setObjectName(QStringLiteral("frmFiltresVignette"));
  setWindowTitle(QStringLiteral(" Filtres mémorisés"));
  auto* l = new QGridLayout(this);
  for (int i = 0; i < 4; ++i) {
    auto* numero = new QLabel(QString::number(i + 1), this);
    numero->setObjectName(QStringLiteral("lblUndo%1").arg(i));
    imgVignette_[i] = new QLabel(this);
    imgVignette_[i]->setObjectName(QStringLiteral("imgVignette%1").arg(i));
    imgVignette_[i]->setFixedSize(kCote, kCote * 3 / 4);
    imgVignette_[i]->setFrameShape(QFrame::Box);
    imgVignette_[i]->setAlignment(Qt::AlignCenter);
    imgVignette_[i]->setToolTip(QStringLiteral("Cliquez sur une vignette pour appliquer ce filtre"));
    imgVignette_[i]->installEventFilter(this);
    imgVignette_[i]->setCursor(Qt::PointingHandCursor);
    // One row of four: short enough to go under the filters on a small screen.
    l->addWidget(numero, 0, i);
    l->addWidget(imgVignette_[i], 1, i);
  }
  imgOriginale_ = new QLabel(QStringLiteral("Original"), this);
  imgOriginale_->setObjectName(QStringLiteral("imgOriginale"));
  imgOriginale_->setToolTip(QStringLiteral("Retour à l'original ..."));
  imgOriginale_->setFrameShape(QFrame::Box);
  imgOriginale_->setAlignment(Qt::AlignCenter);
  imgOriginale_->installEventFilter(this);
  imgOriginale_->setCursor(Qt::PointingHandCursor);
  l->addWidget(imgOriginale_, 2, 0, 1, 2);
  auto* conserver = new QPushButton(QStringLiteral("Ajouter résultat dans la liste"), this);
  conserver->setObjectName(QStringLiteral("cmdConserver"));
  auto* effacer = new QPushButton(QStringLiteral("Effacer toute la liste"), this);
  effacer->setObjectName(QStringLiteral("cmdEffacerVignette"));
  connect(conserver, &QPushButton::clicked, this, [this] { cmdConserver(); });
  connect(effacer, &QPushButton::clicked, this, [this] { cmdEffacerVignette(); });
  l->addWidget(conserver, 2, 2);
  l->addWidget(effacer, 2, 3);
}

frmFiltresVignette::~frmFiltresVignette() = default;

void frmFiltresVignette::MontrerVignette(int i) {
  QLabel* v = imgVignette_[i];
  if (images_[size_t(i)].Vide()) {
    v->clear();
    return;
  }
  QImage image;
  if (!ai_.Convert_ImageToPicture(images_[size_t(i)], image)) {
    Dialogues().Message(QLatin1String(TitreProgramme), QStringLiteral("Error - ") + ai_.Error_GetLast(),
                        Icone::Critique);
    return;
  }
  v->setPixmap(QPixmap::fromImage(image.scaled(v->size(), Qt::KeepAspectRatio, Qt::SmoothTransformation)));
}

void frmFiltresVignette::cmdConserver() {
  QApplication::setOverrideCursor(Qt::WaitCursor);
  int libre = -1;
  for (int i = 0; i < 4 && libre < 0; ++i)
    if (images_[size_t(i)].Vide()) libre = i;
  if (libre < 0) {
    // The oldest state goes first: the others move up, each with its thumbnail.
    for (int i = 0; i < 3; ++i) images_[size_t(i)] = std::move(images_[size_t(i + 1)]);
    images_[3].Reset();
    libre = 3;
  }
  if (!ai_.IO_Copy(s_.ImageFiltre, images_[size_t(libre)]))
    Dialogues().Message(QLatin1String(TitreProgramme), QStringLiteral("Error - ") + ai_.Error_GetLast(),
                        Icone::Critique);
  for (int i = 0; i < 4; ++i) MontrerVignette(i);
  QApplication::restoreOverrideCursor();
}

void frmFiltresVignette::imgVignette(int i) {
  if (i < 0 || i > 3 || images_[size_t(i)].Vide()) return;
  Bitmap copie;
  if (!ai_.IO_Copy(images_[size_t(i)], copie)) {
    Dialogues().Message(QLatin1String(TitreProgramme), QStringLiteral("Error - ") + ai_.Error_GetLast(),
                        Icone::Critique);
    return;
  }
  s_.ImageFiltre = std::move(copie);
  filtres_.Montrer();
}

void frmFiltresVignette::imgOriginale() { filtres_.cmdReinit(); }

void frmFiltresVignette::cmdEffacerVignette() {
  if (Dialogues().Question(QStringLiteral(" Filtres mémorisés"),
                           QStringLiteral("Souhaitez-vous effacer toute la liste des filtres en mémoire ?"),
                           Boutons::OuiNon, Reponse::Non, Icone::Question) != Reponse::Oui)
    return;
  for (int i = 0; i < 4; ++i) {
    images_[size_t(i)].Reset();
    MontrerVignette(i);
  }
}

bool frmFiltresVignette::eventFilter(QObject* objet, QEvent* e) {
  if (e->type() == QEvent::MouseButtonRelease) {
    for (int i = 0; i < 4; ++i)
      if (objet == imgVignette_[i]) {
        imgVignette(i);
        return true;
      }
    if (objet == imgOriginale_) {
      imgOriginale();
      return true;
    }
  }
  return QWidget::eventFilter(objet, e);
}

}  // namespace tg
