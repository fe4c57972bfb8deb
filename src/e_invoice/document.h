#pragma once

#include "e_invoice/amounts.h"
#include "text/dates.h"

#include <optional>
#include <string>
#include <vector>

/// The electronic invoice as the exchange system defines it: the official format of invoices to public
/// administrations and private customers, version 1.2.2, which 1.2.3 takes as it stands. Types and members
/// have the structure's own names. What this program never writes is left out.
///
/// An empty text and an empty optional stand for an element that is not there. In which order and form all of
/// it is written stands in structure.h.
namespace tarvello::e_invoice {

struct IdFiscaleType {
    std::string IdPaese;
    std::string IdCodice;
};

struct DatiTrasmissioneType {
    IdFiscaleType IdTrasmittente;
    std::string ProgressivoInvio;
    std::string FormatoTrasmissione;
    std::string CodiceDestinatario;
    std::string PECDestinatario;
};

/// Either Denominazione, or Nome and Cognome.
struct AnagraficaType {
    std::string Denominazione;
    std::string Nome;
    std::string Cognome;
    std::string Titolo;
};

struct IndirizzoType {
    std::string Indirizzo;
    std::string CAP;
    std::string Comune;
    std::string Provincia;
    std::string Nazione;
};

struct DatiAnagraficiCedenteType {
    IdFiscaleType IdFiscaleIVA;
    std::string CodiceFiscale;
    AnagraficaType Anagrafica;
    std::string AlboProfessionale;
    std::string ProvinciaAlbo;
    std::string NumeroIscrizioneAlbo;
    std::optional<Date> DataIscrizioneAlbo;
    std::string RegimeFiscale;
};

struct IscrizioneREAType {
    std::string Ufficio;
    std::string NumeroREA;
    std::optional<Cents> CapitaleSociale;
    std::string SocioUnico;
    std::string StatoLiquidazione;
};

struct ContattiType {
    std::string Telefono;
    std::string Fax;
    std::string Email;
};

struct CedentePrestatoreType {
    DatiAnagraficiCedenteType DatiAnagrafici;
    IndirizzoType Sede;
    std::optional<IscrizioneREAType> IscrizioneREA;
    std::optional<ContattiType> Contatti;
};

struct DatiAnagraficiCessionarioType {
    std::optional<IdFiscaleType> IdFiscaleIVA;
    std::string CodiceFiscale;
    AnagraficaType Anagrafica;
};

struct CessionarioCommittenteType {
    DatiAnagraficiCessionarioType DatiAnagrafici;
    IndirizzoType Sede;
};

struct FatturaElettronicaHeaderType {
    DatiTrasmissioneType DatiTrasmissione;
    CedentePrestatoreType CedentePrestatore;
    CessionarioCommittenteType CessionarioCommittente;
};

struct DatiRitenutaType {
    std::string TipoRitenuta;
    Cents ImportoRitenuta = 0;
    Rate AliquotaRitenuta = 0;
    std::string CausalePagamento;
};

struct DatiBolloType {
    std::string BolloVirtuale;
    std::optional<Cents> ImportoBollo;
};

struct DatiCassaPrevidenzialeType {
    std::string TipoCassa;
    Rate AlCassa = 0;
    Cents ImportoContributoCassa = 0;
    std::optional<Cents> ImponibileCassa;
    Rate AliquotaIVA = 0;
    std::string Ritenuta;
    std::string Natura;
};

struct DatiGeneraliDocumentoType {
    std::string TipoDocumento;
    std::string Divisa;
    Date Data{};
    std::string Numero;
    std::vector<DatiRitenutaType> DatiRitenuta;
    std::optional<DatiBolloType> DatiBollo;
    std::vector<DatiCassaPrevidenzialeType> DatiCassaPrevidenziale;
    std::optional<Cents> ImportoTotaleDocumento;
    std::vector<std::string> Causale;
};

struct DatiDocumentiCorrelatiType {
    std::string IdDocumento;
    std::optional<Date> Data;
    std::string NumItem;
    std::string CodiceCommessaConvenzione;
    std::string CodiceCUP;
    std::string CodiceCIG;
};

struct DatiGeneraliType {
    DatiGeneraliDocumentoType DatiGeneraliDocumento;
    std::vector<DatiDocumentiCorrelatiType> DatiOrdineAcquisto;
    std::vector<DatiDocumentiCorrelatiType> DatiContratto;
    std::vector<DatiDocumentiCorrelatiType> DatiConvenzione;
    std::vector<DatiDocumentiCorrelatiType> DatiFattureCollegate;
};

struct AltriDatiGestionaliType {
    std::string TipoDato;
    std::string RiferimentoTesto;
    std::optional<Date> RiferimentoData;
};

/// Without Quantita, which counts as 1: the price of a line is its total.
struct DettaglioLineeType {
    int NumeroLinea = 0;
    std::string Descrizione;
    Cents PrezzoUnitario = 0;
    Cents PrezzoTotale = 0;
    Rate AliquotaIVA = 0;
    std::string Ritenuta;
    std::string Natura;
    std::vector<AltriDatiGestionaliType> AltriDatiGestionali;
};

struct DatiRiepilogoType {
    Rate AliquotaIVA = 0;
    std::string Natura;
    Cents ImponibileImporto = 0;
    Cents Imposta = 0;
    std::string EsigibilitaIVA;
    std::string RiferimentoNormativo;
};

struct DatiBeniServiziType {
    std::vector<DettaglioLineeType> DettaglioLinee;
    std::vector<DatiRiepilogoType> DatiRiepilogo;
};

struct DettaglioPagamentoType {
    std::string ModalitaPagamento;
    Cents ImportoPagamento = 0;
    std::string IstitutoFinanziario;
    std::string IBAN;
    std::string ABI;
    std::string CAB;
};

struct DatiPagamentoType {
    std::string CondizioniPagamento;
    std::vector<DettaglioPagamentoType> DettaglioPagamento;
};

struct FatturaElettronicaBodyType {
    DatiGeneraliType DatiGenerali;
    DatiBeniServiziType DatiBeniServizi;
    std::vector<DatiPagamentoType> DatiPagamento;
};

struct FatturaElettronicaType {
    std::string versione;
    FatturaElettronicaHeaderType FatturaElettronicaHeader;
    FatturaElettronicaBodyType FatturaElettronicaBody;
};

} // namespace tarvello::e_invoice
