-- The tables of a new database: of the file that ships with the program, and of the new archives that it makes.
-- Amounts, percentages and yes/no facts are texts, as the forms show them ("€ 1.234,56", "20", "Sì").
-- DATE columns hold year-month-day. A CLOB is a text of any length: in an Access file a memo, where TEXT has a limit.

CREATE TABLE Clienti (
    Numero_Cliente INTEGER PRIMARY KEY AUTOINCREMENT,
    Cognome_Ragione_Sociale TEXT,
    Nome TEXT,
    Codice_Fiscale TEXT,
    Partita_IVA TEXT,
    Indirizzo TEXT,
    CAP TEXT,
    Provincia TEXT,
    Città TEXT,
    Telefono TEXT,
    Fax TEXT,
    email TEXT,
    Appunti CLOB
);

-- Looked up without regard to letter case: the first index of each pair answers within ASCII, the second holds the
-- few rows whose text has more than ASCII, which SQLite itself cannot fold.
CREATE INDEX Clienti_Codice_Fiscale ON Clienti (Codice_Fiscale COLLATE NOCASE);
CREATE INDEX Clienti_Codice_Fiscale_oltre_ASCII ON Clienti (Codice_Fiscale) WHERE Codice_Fiscale GLOB '*[^ -~]*';
CREATE INDEX Clienti_Partita_IVA ON Clienti (Partita_IVA COLLATE NOCASE);
CREATE INDEX Clienti_Partita_IVA_oltre_ASCII ON Clienti (Partita_IVA) WHERE Partita_IVA GLOB '*[^ -~]*';

CREATE TABLE Fatture (
    ID INTEGER PRIMARY KEY AUTOINCREMENT,
    Numero_Fattura INTEGER,
    Data_Fattura DATE,
    Anno INTEGER,
    Numero_Cliente INTEGER,
    Codice_Fiscale TEXT,
    Partita_IVA TEXT,
    Nome TEXT,
    Cognome_Ragione_Sociale TEXT,
    Indirizzo TEXT,
    CAP TEXT,
    Provincia TEXT,
    Città TEXT,
    Prestazione1 CLOB,
    Importo1 TEXT,
    Prestazione2 CLOB,
    Importo2 TEXT,
    Prestazione3 CLOB,
    Importo3 TEXT,
    Prestazione4 CLOB,
    Importo4 TEXT,
    Prestazione5 CLOB,
    Importo5 TEXT,
    Rivalsa TEXT,
    Dicitura_Rivalsa TEXT,
    Percentuale_Rivalsa TEXT,
    Importo_Rivalsa TEXT,
    Imponibile TEXT,
    Aliquota_IVA TEXT,
    Imposta_IVA TEXT,
    Spese TEXT,
    IVA_Spese TEXT,
    Importo_Spese TEXT,
    Articolo_Esenzione TEXT,
    Totale_Fattura TEXT,
    Ritenuta TEXT,
    Importo_Ritenuta TEXT,
    Percentuale_Ritenuta TEXT,
    Ritenuta_Su TEXT,
    Importo_Netto TEXT,
    Check_Pagamento TEXT,
    Pagamento CLOB
);

CREATE INDEX Fatture_Anno ON Fatture (Anno);
CREATE INDEX Fatture_Numero_Cliente ON Fatture (Numero_Cliente);

CREATE TABLE DatiIntestazione (
    Nome_Azienda TEXT,
    Indirizzo TEXT,
    Telefono TEXT,
    Fax TEXT,
    Codice_Fiscale TEXT,
    Partita_IVA TEXT,
    email TEXT,
    Descrizione_Attività TEXT,
    Banca TEXT,
    ABI TEXT,
    CAB TEXT,
    CC TEXT
);
