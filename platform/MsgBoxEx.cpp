#include "platform/MsgBoxEx.h"

#include <QApplication>
#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace tg {

namespace {

QStyle::StandardPixmap Pictogramme(Icone icone) {
  switch (icone) {
    case Icone::Critique: return QStyle::SP_MessageBoxCritical;
    case Icone::Question: return QStyle::SP_MessageBoxQuestion;
    case Icone::Exclamation: return QStyle::SP_MessageBoxWarning;
    default: return QStyle::SP_MessageBoxInformation;
  }
}

}  // namespace

frmMsgBoxEx::frmMsgBoxEx(const Bulle& bulle, int nePlusAfficher, QWidget* parent)
    : QDialog(parent), bulle_(bulle) {
  setObjectName(QStringLiteral("frmMsgBoxEx"));
  setWindowTitle(bulle.titre);
  setModal(true);

  auto* lblIcone = new QLabel(this);
  lblIcone->setObjectName(QStringLiteral("lblIcone"));
  if (bulle.icone != Icone::Aucune) {
    const int cote = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this);
    lblIcone->setPixmap(style()->standardIcon(Pictogramme(bulle.icone), nullptr, this)
                            .pixmap(cote, cote));
  }
  lblIcone->setAlignment(Qt::AlignTop);

  auto* lblTexte = new QLabel(bulle.texte, this);
  lblTexte->setObjectName(QStringLiteral("lblTexte"));
  lblTexte->setWordWrap(true);
  lblTexte->setTextFormat(Qt::PlainText);

  lblTexteLong_ = new QLabel(bulle.texteLong, this);
  lblTexteLong_->setObjectName(QStringLiteral("lblTexteLong"));
  lblTexteLong_->setWordWrap(true);
  lblTexteLong_->setTextFormat(Qt::PlainText);
  lblTexteLong_->setVisible(false);

  cmdInfos_ = new QPushButton(bulle.texteAgrandir, this);
  cmdInfos_->setObjectName(QStringLiteral("cmdInfos"));
  cmdInfos_->setAutoDefault(false);
  // Nothing more to show: no button.
  cmdInfos_->setVisible(!bulle.texteLong.isEmpty());
  connect(cmdInfos_, &QPushButton::clicked, this, &frmMsgBoxEx::Basculer);

  chkNePlusAfficher_ = new QCheckBox(bulle.texteCase, this);
  chkNePlusAfficher_->setObjectName(QStringLiteral("chkNePlusAfficher"));
  chkNePlusAfficher_->setChecked(nePlusAfficher != 0);

  auto* cmdOK = new QPushButton(QStringLiteral("OK"), this);
  cmdOK->setObjectName(QStringLiteral("cmdOK"));
  cmdOK->setDefault(true);
  connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);

  auto* textes = new QVBoxLayout;
  textes->addWidget(lblTexte);
  textes->addWidget(lblTexteLong_);
  auto* haut = new QHBoxLayout;
  haut->addWidget(lblIcone);
  haut->addLayout(textes, 1);
  auto* bas = new QHBoxLayout;
  bas->addWidget(chkNePlusAfficher_);
  bas->addStretch(1);
  bas->addWidget(cmdInfos_);
  bas->addWidget(cmdOK);
  auto* tout = new QVBoxLayout(this);
  tout->addLayout(haut);
  tout->addLayout(bas);
  tout->setSizeConstraint(QLayout::SetFixedSize);
}

bool frmMsgBoxEx::NePlusAfficher() const { return chkNePlusAfficher_->isChecked(); }

void frmMsgBoxEx::Basculer() {
  agrandi_ = !agrandi_;
  lblTexteLong_->setVisible(agrandi_);
  cmdInfos_->setText(agrandi_ ? bulle_.texteReduire : bulle_.texteAgrandir);
}

}  // namespace tg
