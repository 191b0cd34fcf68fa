// The Qt dialogues of the program.
#include <QAbstractButton>
#include <QApplication>
#include <QColorDialog>
#include <QDir>
#include <QFileDialog>
#include <QFontDialog>
#include <QInputDialog>
#include <QMessageBox>

#include "platform/Dialogues.h"
#include "platform/MsgBoxEx.h"

namespace tg {

namespace {

QMessageBox::Icon IconeQt(Icone icone) {
  switch (icone) {
    case Icone::Critique: return QMessageBox::Critical;
    case Icone::Question: return QMessageBox::Question;
    case Icone::Exclamation: return QMessageBox::Warning;
    case Icone::Information: return QMessageBox::Information;
    case Icone::Aucune: break;
  }
  return QMessageBox::NoIcon;
}

QMessageBox::StandardButton BoutonQt(Reponse r) {
  switch (r) {
    case Reponse::OK: return QMessageBox::Ok;
    case Reponse::Oui: return QMessageBox::Yes;
    case Reponse::Non: return QMessageBox::No;
    case Reponse::Annuler: return QMessageBox::Cancel;
  }
  return QMessageBox::NoButton;
}

// The window in front, so that the dialog is centred on it and modal to it.
QWidget* Parent() { return QApplication::activeWindow(); }

class DialoguesQt : public IDialogues {
 public:
  void Message(const QString& titre, const QString& texte, Icone icone) override {
    QMessageBox boite(IconeQt(icone), titre, texte, QMessageBox::Ok, Parent());
    boite.exec();
  }

  Reponse Question(const QString& titre, const QString& texte, Boutons boutons, Reponse defaut,
                   Icone icone) override {
    QMessageBox::StandardButtons b;
    switch (boutons) {
      case Boutons::OK: b = QMessageBox::Ok; break;
      case Boutons::OuiNon: b = QMessageBox::Yes | QMessageBox::No; break;
      case Boutons::OuiNonAnnuler:
        b = QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
        break;
      case Boutons::OKAnnuler: b = QMessageBox::Ok | QMessageBox::Cancel; break;
    }
    QMessageBox boite(IconeQt(icone), titre, texte, b, Parent());
    if (b.testFlag(BoutonQt(defaut))) boite.setDefaultButton(BoutonQt(defaut));
    // The buttons keep the system's French words whatever the translation loaded.
    const std::pair<QMessageBox::StandardButton, const char16_t*> mots[] = {
        {QMessageBox::Yes, u"Oui"}, {QMessageBox::No, u"Non"}, {QMessageBox::Cancel, u"Annuler"}};
    for (const auto& [bouton, mot] : mots)
      if (QAbstractButton* w = boite.button(bouton)) w->setText(QString::fromUtf16(mot));

    switch (boite.exec()) {
      case QMessageBox::Yes: return Reponse::Oui;
      case QMessageBox::No: return Reponse::Non;
      case QMessageBox::Cancel: return Reponse::Annuler;
      case QMessageBox::Ok: return Reponse::OK;
      default: break;
    }
    // Closed by the title bar or Escape without a cancel button.
    if (b.testFlag(QMessageBox::Cancel)) return Reponse::Annuler;
    return boutons == Boutons::OuiNon ? Reponse::Non : Reponse::OK;
  }

  std::optional<QString> Saisie(const QString& titre, const QString& invite,
                                const QString& defaut) override {
    QInputDialog d(Parent());
    d.setWindowTitle(titre);
    d.setLabelText(invite);
    d.setTextValue(defaut);
    d.setOkButtonText(QStringLiteral("OK"));
    d.setCancelButtonText(QStringLiteral("Annuler"));
    if (d.exec() != QDialog::Accepted) return std::nullopt;
    return d.textValue();
  }

  std::optional<QString> Choix(const QString& titre, const QString& invite, const QStringList& elements,
                               int courant) override {
    QInputDialog d(Parent());
    d.setWindowTitle(titre);
    d.setLabelText(invite);
    d.setComboBoxItems(elements);
    d.setComboBoxEditable(false);
    if (courant >= 0 && courant < elements.size()) d.setTextValue(elements[courant]);
    d.setOkButtonText(QStringLiteral("OK"));
    d.setCancelButtonText(QStringLiteral("Annuler"));
    if (d.exec() != QDialog::Accepted) return std::nullopt;
    return d.textValue();
  }

  QString FichierOuvrir(const QString& titre, const QString& dossier,
                        const QString& filtre) override {
    QFileDialog d(Parent(), titre, dossier, FiltreQt(filtre));
    d.setObjectName(QStringLiteral("dlgFichierOuvrir"));
    d.setAcceptMode(QFileDialog::AcceptOpen);
    // Any name comes back: the program's own "Fichier introuvable !" answers
    // a name that does not exist, not Qt's English-worded warning.
    d.setFileMode(QFileDialog::AnyFile);
    d.setLabelText(QFileDialog::Accept, QStringLiteral("Ouvrir"));
    d.setLabelText(QFileDialog::Reject, QStringLiteral("Annuler"));
    if (d.exec() != QDialog::Accepted || d.selectedFiles().isEmpty()) return {};
    return d.selectedFiles().constFirst();
  }

  QString FichierEnregistrer(const QString& titre, const QString& dossier,
                             const QString& nomDefaut, const QString& filtre) override {
    const QString depart =
        dossier.isEmpty() ? nomDefaut : QDir(dossier).filePath(nomDefaut);
    QFileDialog d(Parent(), titre, QString(), FiltreQt(filtre));
    d.setObjectName(QStringLiteral("dlgFichierEnregistrer"));
    d.setAcceptMode(QFileDialog::AcceptSave);
    d.setFileMode(QFileDialog::AnyFile);
    // A name typed bare takes the filter's extension, before the overwrite
    // question is asked about it.
    d.setDefaultSuffix(SuffixeFiltre(filtre));
    d.setLabelText(QFileDialog::Accept, QStringLiteral("Enregistrer"));
    d.setLabelText(QFileDialog::Reject, QStringLiteral("Annuler"));
    d.selectFile(depart);
    if (d.exec() != QDialog::Accepted || d.selectedFiles().isEmpty()) return {};
    return d.selectedFiles().constFirst();
  }

  QString Dossier(const QString& titre, const QString& depart) override {
    return QFileDialog::getExistingDirectory(Parent(), titre, depart);
  }

  int Couleur(int initiale) override {
    const QColor depart = initiale < 0 ? QColor(Qt::black) : VersQColor(initiale);
    return DepuisQColor(QColorDialog::getColor(depart, Parent()));
  }

  std::optional<QFont> Police(const QFont& initiale) override {
    bool ok = false;
    const QFont f = QFontDialog::getFont(&ok, initiale, Parent());
    if (!ok) return std::nullopt;
    return f;
  }

  void MsgBoxEx(const Bulle& bulle, int& nePlusAfficher) override {
    frmMsgBoxEx boite(bulle, nePlusAfficher, Parent());
    boite.exec();
    nePlusAfficher = boite.NePlusAfficher() ? 1 : 0;
  }
};

}  // namespace

void InstallerDialoguesQt() {
  static DialoguesQt qt;
  DefinirDialoguesParDefaut(&qt);
}

}  // namespace tg
