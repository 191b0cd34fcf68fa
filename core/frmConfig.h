#pragma once
// The options window: UserConfig.ini and objectif.dat through tabs. Opened
// from the main window's mnuOptions, or from the measuring window, which then
// owns it.
#include <QString>
#include <QStringList>
#include <QWidget>
#include <array>

#include "core/SessionRecord.h"

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QLineEdit;
class QListWidget;
class QPushButton;
class QRadioButton;
class QTabWidget;

namespace tg {

class frmFichierPhoto;

// --- Rules of the window that need no widget

inline constexpr int NombreObjectifsMax = 30;
inline constexpr double GrossissementMax = 200;  // x
inline constexpr int PoidsDefaut = 250;          // ko

// cmdAjouterObjectif on the list of objectives, in this order: a full list is
// refused before the value is looked at; the value must pass ControleNonNul;
// above 200 it is refused; then it is added, the list sorted by value and
// duplicates (same value) removed with "Doublons supprimés !". Every refusal
// is said through the dialogues. True when the list changed or kept its
// content after a duplicate.
bool AjouterObjectif(QStringList& objectifs, const QString& saisie);
// objectif.dat: the items, then empty items up to 30 lines.
bool EcrireObjectifs(const QStringList& objectifs);

// A weight above 250 ko asks before it is kept.
bool PoidsADemander(double poids);
QString TextePoidsImage(const QString& poids);

// The keys cmdOK writes, already cleaned, as they go into the file.
struct ValeursConfig {
  QString NumVersion, NomAuteur, NomFichImage, NextNumberImage, TitreImage, ImageAccueil, MajAuto,
      MessageBox, MethodeRedim, RepTravail, RepEtalon, RepApPhoto, ModeOuvrir, CartoucheHB,
      ChoixFormatMesure, PoidsMax, PathNav;
  std::array<QString, 4> ApExt;
};
// Writes the keys, in the order NumVersion .. PathNav, ApExt0 .. ApExt3; with
// `affichees` (what the window showed when it opened), a key present in the
// file whose value the user left as shown is not written: a value the program
// could not read stays as the user wrote it. False when the file could not be
// written.
bool EcrireConfiguration(const ValeursConfig& v, const ValeursConfig* affichees = nullptr);

// "Standard" (1) or "reduced" (0) display of the measuring window from the
// key, or from the screen's width when the key is empty.
bool AffichageReduit(const QString& choixFormatMesure, int largeurEcran);

// --- The window

class frmConfig : public QWidget {
  Q_OBJECT

 public:
  // `principale` receives the format changes and the new external application
  // entries; `proprietaire` (the measuring window, or null for the main
  // window) owns the window. Opening reads the configuration anew.
  frmConfig(SessionRecord& session, frmFichierPhoto* principale, QWidget* proprietaire = nullptr);

  void cmdOK();
  void cmdAnnuler();
  void cmdAjouterObjectif();
  void cmdEffacerElement();
  void cmdEffacerListe();
  void cmdValParDefautPoidsImage();
  void cmdRepertoire(int index);  // cmdRepTravail 0, cmdRepEtalon 1, cmdRepApPhoto 2
  void cmdEffacerDirTxt(int index);
  void cmdChoisirApExt(int index);
  void cmdEffacerApExt(int index);
  void cmdChoisirNav();
  void cmdAppliquerFormatSortie();
  void cmdFormatSortieDefaut();
  void cmdFormatSortieDefaut2();

 protected:
  bool eventFilter(QObject* objet, QEvent* e) override;

 private:
  QWidget* OngletGeneral();
  QWidget* OngletImages();
  QWidget* OngletDossiers();
  QWidget* OngletApplications();
  QWidget* OngletObjectifs();
  void Charger();
  void AfficherApExt();
  void AfficherObjectifs();
  QStringList Objectifs() const;
  void ChangerFormat(int choix);
  void ChoixNav(bool autres);

  SessionRecord& s_;
  frmFichierPhoto* principale_;
  std::array<QString, 4> apExt_;  // full paths; the list shows their titles
  ValeursConfig affichees_;        // what the fields showed after Charger
  ValeursConfig ValeursFenetre() const;

  QTabWidget* onglets_ = nullptr;
  QWidget* ongletObjectifs_ = nullptr;
  QLineEdit* txtNomAuteur_ = nullptr;
  QCheckBox* chkTitreImage_ = nullptr;
  QLineEdit* txtNomFichImage_ = nullptr;
  QLineEdit* txtNextNumberImage_ = nullptr;
  QCheckBox* chkMessageBox_ = nullptr;
  QCheckBox* chkImageAccueil_ = nullptr;
  QCheckBox* chkMajAuto_ = nullptr;
  QCheckBox* chkMethodeRedim_ = nullptr;
  QCheckBox* chkModeOuvrir_ = nullptr;
  std::array<QRadioButton*, 2> optCartoucheHB_{};
  std::array<QRadioButton*, 2> optTailleMesure_{};
  QLineEdit* txtPoidsMax_ = nullptr;
  QComboBox* comboFormatSortie_ = nullptr;
  QLineEdit* txtFormatEnCours_ = nullptr;
  std::array<QLineEdit*, 3> txtRep_{};
  QListWidget* lstApExt_ = nullptr;
  std::array<QRadioButton*, 2> optNav_{};
  QLineEdit* txtNavName_ = nullptr;
  QLineEdit* txtNavFull_ = nullptr;
  QPushButton* cmdChoisirNav_ = nullptr;
  QListWidget* lstSaisieObjectif_ = nullptr;
  QLineEdit* txtNewObjectif_ = nullptr;
  QLineEdit* txtTotObjectif_ = nullptr;
};

// Installs the hook "frmConfig" of the main window: one options window at a time.
void InstallerConfig(frmFichierPhoto& fenetre);

}  // namespace tg
