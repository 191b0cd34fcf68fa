#pragma once
// The store of measurement tables: table_mesure.dat in the program folder, a
// random-access file of 400-byte slots, little-endian throughout.
//
//   slot 1 (offset 0)      header: u16 type tag 2, then i16 NbEnreg, the last
//                          used slot (header included); the rest is never read
//   slot k (offset (k-1)*400), k = 2 .. NbEnreg: one EnrMesure, its fields
//                          packed without padding from byte 0 of the slot
//
// Table number n, as the user sees it, is slot n + 1. Strings are a u16 byte
// count and that many Windows-1252 bytes, no terminator.
#include <QByteArray>
#include <QFile>
#include <QString>
#include <cstdint>

namespace tg {

constexpr int kLongueurSlot = 400;  // bytes

struct EnrMesure {
  QString Modele;       // camera model (EXIF Model)
  int16_t LargPix = 0;  // raw width of the calibration photo, pixels
  QString Micro;        // microscope
  QString Config;       // tube, eyepiece, adapter ...
  float Obj = 0;        // reference objective magnification
  int16_t Pix = 0;      // "X pixels" ...
  int16_t Mic = 0;      // ... = "X microns"
  float Focale = 0;     // zoom focal length, mm; 0 for no zoom
  bool operator==(const EnrMesure&) const = default;
};

// The one transfer record of the subsystem: every reader fetches into it, and
// what it held before is lost.
EnrMesure& TableMesure();

// Paths in the program folder.
QString CheminTableMesure();         // table_mesure.dat
QString CheminTableMesureBak();      // table_mesure.bak, the user's backup
QString CheminTableMesureSecours();  // table_mesure_secours.bak, written at closing
QString CheminTableMesureCfg();      // table_mesure.cfg, a pending replacement

// The packed record; empty when it does not fit a slot (a u16 length over
// 65535 or more than 400 bytes in all).
QByteArray EncoderEnr(const EnrMesure& e);
// Reads a record from the start of `octets`; false when a field runs past
// the end of the slot.
bool DecoderEnr(const QByteArray& octets, EnrMesure& e);

// A trapped error of the file layer, numbered as the system numbers them.
struct ErreurTable {
  int numero = 0;  // 0: none; 52 bad file, 59 bad record length, 75 access error
  QString texte;
};

// table_mesure.dat held for one operation. Opening creates the file empty
// when it is missing, which is why readers test that it exists first. Every
// read reads the file whole from disk; every change is made on the file as
// it is then and replaces it whole, through a temporary file flushed and
// renamed, so that the file on disk is always an old or a new one, never
// half written. Between Differer() and Valider() changes stay in memory and
// go to disk together.
class FichierMesure {
 public:
  FichierMesure() = default;
  FichierMesure(const FichierMesure&) = delete;
  FichierMesure& operator=(const FichierMesure&) = delete;
  ~FichierMesure() { Fermer(); }

  bool Ouvrir(const QString& chemin = CheminTableMesure());
  // Writes what is left deferred, then forgets the file.
  void Fermer();
  bool EstOuvert() const { return ouvert_; }
  QString Chemin() const { return chemin_; }

  // The header's value; 0 for an empty or short file or an unknown type tag.
  // A value below 1 means no tables.
  int LireEntete();
  bool EcrireEntete(int16_t nbEnreg);
  // Slot k into `e`; bytes past the end of the file read as zeros.
  bool LireEnr(int k, EnrMesure& e);
  bool LireEnr(int k) { return LireEnr(k, TableMesure()); }
  // Writes only the record's bytes; the rest of the slot keeps what it held.
  bool EcrireEnr(int k, const EnrMesure& e);
  bool EcrireEnr(int k) { return EcrireEnr(k, TableMesure()); }
  // A 16-bit zero at the start of slot k (the mark of a deleted record).
  bool EffacerSlot(int k);

  // Changes kept in memory until Valider, which writes them at once.
  void Differer() { ++differe_; }
  bool Valider();

  const ErreurTable& Erreur() const { return erreur_; }

 private:
  bool Ecrire(qint64 position, const QByteArray& octets);
  // The file as it is on disk now, unless changes wait for Valider.
  bool Recharger();
  bool Enregistrer();
  bool Echec(int numero, const QString& texte);
  QString chemin_;
  QByteArray donnees_;    // the whole file, with the changes not yet written
  QByteArray surDisque_;  // the whole file as it is on disk
  bool ouvert_ = false;
  bool modifie_ = false;
  int differe_ = 0;
  ErreurTable erreur_;
};

// Appends `e` as slot nbEnreg + 1: the header and the record reach the disk
// together. nbEnreg below 1 counts as 1 (no tables).
bool AjouterTable(FichierMesure& f, int& nbEnreg, const EnrMesure& e);

// Deletes the table of slot k (2 .. nbEnreg): the last record moves into the
// hole, so other numbers stay. On return nbEnreg is the new last slot and k
// the slot to show (the moved record, or the one before when the last was
// deleted). When no table is left the file is closed and deleted and
// `fichierSupprime` is set.
bool SupprimerTable(FichierMesure& f, int& k, int& nbEnreg, bool& fichierSupprime);

// The number of tables of the file, without opening it for writing: 0 when
// it is missing or its header is below 1.
int NombreTables(const QString& chemin = CheminTableMesure());

// Removes table_mesure.dat, then table_mesure.bak, when its length is 0.
void EffacerFichierMesureVide();
// A table_mesure.cfg left by an installer replaces table_mesure.dat, tables
// of the user's own included; the .cfg is deleted whether the copy worked or
// not. Silent.
void RemplacerParTableConfig();
// Both, in that order: what the start of the program does with the store.
void InitialiserTablesMesure();

// The main window's table-management entry is on when either file exists.
bool TablesGerables();

}  // namespace tg
