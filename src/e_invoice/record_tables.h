#pragma once

#include "e_invoice/records.h"
#include "e_invoice/stored_columns.h"
#include "e_invoice/structure.h"

#include <string>
#include <vector>

/// The tables of electronic invoices and the columns of their records.
namespace tarvello::e_invoice {

inline const std::string issuer_table = "FE_Emittente"; ///< one row, with the key 1
inline const std::string customer_table = "FE_Clienti";
inline const std::string file_table = "FE_Fatture";
inline const std::string receipt_table = "FE_Ricevute";

/// All of them.
const std::vector<store::TableDeclaration>& record_tables();

// The columns of each record. Widths are those of the elements they go to, with room for what conversion
// adds.

void columns(auto& v, Is<Issuer> auto& r) {
    v.text("Nome", r.Nome, 100);
    v.text("Cognome", r.Cognome, 100);
    v.text("Titolo", r.Titolo, 20);
    v.text("CAP", r.CAP, 20);
    v.text("Comune", r.Comune, 100);
    v.text("Provincia", r.Provincia, 50);
    v.text("RegimeFiscale", r.RegimeFiscale, 4);
    v.text("TipoRitenuta", r.TipoRitenuta, 4);
    v.text("CausalePagamento", r.CausalePagamento, 2);
    v.text("TipoCassa", r.TipoCassa, 4);
    v.text("TipoDocumento", r.TipoDocumento, 4);
    v.whole("FormaNumero", r.number_form);
    v.text("IBAN", r.IBAN, 50);
    v.text("DescrizioneSpese", r.DescrizioneSpese, 255);
    v.text("AlboProfessionale", r.AlboProfessionale, 100);
    v.text("ProvinciaAlbo", r.ProvinciaAlbo, 50);
    v.text("NumeroIscrizioneAlbo", r.NumeroIscrizioneAlbo, 100);
    v.date("DataIscrizioneAlbo", r.DataIscrizioneAlbo);
    v.text("UfficioREA", r.IscrizioneREA.Ufficio, 50);
    v.text("NumeroREA", r.IscrizioneREA.NumeroREA, 50);
    v.cents("CapitaleSociale", r.IscrizioneREA.CapitaleSociale);
    v.text("SocioUnico", r.IscrizioneREA.SocioUnico, 2);
    v.text("StatoLiquidazione", r.IscrizioneREA.StatoLiquidazione, 2);
}

void columns(auto& v, Is<Customer> auto& r) {
    v.text("CodiceDestinatario", r.CodiceDestinatario, 20);
    v.text("PECDestinatario", r.PECDestinatario, 255);
    v.text("Nazione", r.Nazione, 2);
    v.yes("PubblicaAmministrazione", r.public_administration);
    v.yes("GruppoIVA", r.vat_group);
    v.text("IdPaese", r.IdPaese, 2);
    v.text("IdCodice", r.IdCodice, 50);
    v.text("Indirizzo", r.Indirizzo, 255);
    v.text("Comune", r.Comune, 255);
}

void columns(auto& v, Is<Decisions> auto& r) {
    v.text("TipoDocumento", r.TipoDocumento, 4);
    v.text("Natura", r.Natura, 4);
    v.text("NaturaSpese", r.NaturaSpese, 4);
    v.memo("RiferimentoNormativo", r.RiferimentoNormativo);
    v.memo("RiferimentoNormativoSpese", r.RiferimentoNormativoSpese);
    v.memo("DescrizioneSpese", r.DescrizioneSpese);
    v.yes("Bollo", r.bollo);
    v.text("EsigibilitaIVA", r.EsigibilitaIVA, 2);
    v.lines("Causale", r.Causale);
    v.whole("TipoRiferimento", r.reference_kind);
    v.text("IdDocumento", r.reference.IdDocumento, 255);
    v.date("DataDocumento", r.reference.Data);
    v.text("NumItem", r.reference.NumItem, 255);
    v.text("CodiceCommessaConvenzione", r.reference.CodiceCommessaConvenzione, 255);
    v.text("CodiceCUP", r.reference.CodiceCUP, 50);
    v.text("CodiceCIG", r.reference.CodiceCIG, 50);
    v.text("FatturaCollegata", r.FatturaCollegata.IdDocumento, 255);
    v.date("DataCollegata", r.FatturaCollegata.Data);
    v.text("ProtocolloIntento", r.ProtocolloIntento, 50);
    v.date("DataIntento", r.DataIntento);
    v.whole("Banca", r.bank);
}

void columns(auto& v, Is<InvoiceFile> auto& r) {
    v.whole("Fattura", r.invoice);
    columns(v, r.decisions);
    v.whole("Stato", r.state);
    v.text("NomeFile", r.file_name, 60);
    v.memo("Cartella", r.folder);
    v.text("Numero", r.number, 20);
    v.whole("AnnoDocumento", r.year);
    v.text("Impronta", r.hash, 64);
    v.date("Creata", r.created);
    v.date("Inviata", r.sent);
    v.date("Scartata", r.rejected);
    v.text("IdentificativoSdI", r.sdi_number, 50);
}

void columns(auto& v, Is<StoredReceipt> auto& r) {
    v.whole("Documento", r.file);
    v.text("Tipo", r.kind, 2);
    v.text("Nome", r.name, 255);
    v.date("Ricevuta", r.taken);
    v.memo("Identita", r.identity);
    v.memo("Contenuto", r.xml);
}

} // namespace tarvello::e_invoice
