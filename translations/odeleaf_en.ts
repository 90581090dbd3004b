<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="de_DE">
<context>
    <name>AboutDialog</name>
    <message>
        <source>Über OdeLeaf</source>
        <translation>About OdeLeaf</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>Eine Schreib- und Verwaltungsapp für Gedichte.</source>
        <translation>An app for writing and managing poems.</translation>
    </message>
</context>
<context>
    <name>AnalysisActions</name>
    <message>
        <source>Duplikate prüfen</source>
        <translation>Check for Duplicates</translation>
    </message>
    <message>
        <source>Gleiche und sehr ähnliche Titel im Archiv finden; es wird nichts verändert</source>
        <translation>Find identical and very similar titles in the archive; nothing is changed</translation>
    </message>
    <message>
        <source>Statistik</source>
        <translation>Statistics</translation>
    </message>
    <message>
        <source>Wie vollständig das Archiv ist, gesamt und je Kategorie</source>
        <translation>How complete the archive is, overall and per category</translation>
    </message>
</context>
<context>
    <name>AppPreferences</name>
    <message>
        <source>Die Einstellungen konnten nicht gespeichert werden: %1</source>
        <translation>The settings could not be saved: %1</translation>
    </message>
</context>
<context>
    <name>ArchiveContext</name>
    <message>
        <source>(ohne Titel)</source>
        <translation>(untitled)</translation>
    </message>
    <message>
        <source>„%1“ wurde in einem anderen Programm endgültig gelöscht. Die Änderung hier ist nicht gespeichert; beim nächsten Speichern wird das Gedicht neu angelegt.</source>
        <translation>“%1” was deleted permanently in another program. The change made here has not been saved; the next save creates the poem again.</translation>
    </message>
    <message>
        <source>„%1“ wurde gleichzeitig in einem anderen Programm geändert (%2). Die Änderung hier ist nicht gespeichert; beim nächsten Speichern ersetzt sie die andere.</source>
        <translation>“%1” was changed in another program at the same time (%2). The change made here has not been saved; the next save replaces the other one.</translation>
    </message>
    <message>
        <source>„%1“ wurde in einem anderen Programm geändert und deshalb nicht endgültig gelöscht. Beim nächsten Löschen geht diese Änderung verloren.</source>
        <translation>“%1” was changed in another program and was therefore not deleted permanently. Deleting it again discards that change.</translation>
    </message>
</context>
<context>
    <name>ArchiveOperations</name>
    <message>
        <source>Sicherheitsbackups…</source>
        <translation>Safety Backups…</translation>
    </message>
    <message>
        <source>Die automatischen Sicherungen ansehen, wiederherstellen oder löschen</source>
        <translation>View, restore or delete the automatic backups</translation>
    </message>
</context>
<context>
    <name>AtomicFileWriter</name>
    <message>
        <source>Der Ordner „%1“ konnte nicht angelegt werden: %2</source>
        <translation>The folder “%1” could not be created: %2</translation>
    </message>
    <message>
        <source>Keine normale Datei: %1</source>
        <translation>Not a regular file: %1</translation>
    </message>
    <message>
        <source>Nicht genug Speicherplatz</source>
        <translation>Not enough disk space</translation>
    </message>
    <message>
        <source>Das Dateisystem ist schreibgeschützt</source>
        <translation>The file system is read-only</translation>
    </message>
    <message>
        <source>Zugriff verweigert</source>
        <translation>Permission denied</translation>
    </message>
    <message>
        <source>Der Ordner existiert nicht</source>
        <translation>The folder does not exist</translation>
    </message>
    <message>
        <source>Ein-/Ausgabefehler des Datenträgers</source>
        <translation>Input/output error on the disk</translation>
    </message>
    <message>
        <source>Die Datei ist zu groß für das Dateisystem</source>
        <translation>The file is too large for the file system</translation>
    </message>
    <message>
        <source>Der Dateiname ist zu lang</source>
        <translation>The file name is too long</translation>
    </message>
    <message>
        <source>Die Datei „%1“ ist eine Verknüpfung eines anderen Benutzers in einem gemeinsam genutzten Ordner und wird nicht überschrieben.</source>
        <translation>The file “%1” is another user’s link in a shared folder and is not overwritten.</translation>
    </message>
</context>
<context>
    <name>BackupActions</name>
    <message>
        <source>Backup erstellen</source>
        <translation>Create Backup</translation>
    </message>
    <message>
        <source>Alle Gedichte einschließlich Papierkorb in eine Backup-Datei sichern</source>
        <translation>Save all poems, including the Trash, to a backup file</translation>
    </message>
    <message>
        <source>Wiederherstellen</source>
        <translation>Restore</translation>
    </message>
    <message>
        <source>Gedichte aus einer Backup-Datei ergänzen oder aktualisieren</source>
        <translation>Add or update poems from a backup file</translation>
    </message>
    <message>
        <source>OdeLeaf-Backup speichern</source>
        <translation>Save OdeLeaf Backup</translation>
    </message>
    <message>
        <source>JSON-Dateien (*.json)</source>
        <translation>JSON Files (*.json)</translation>
    </message>
    <message>
        <source>OdeLeaf-Backup auswählen</source>
        <translation>Choose OdeLeaf Backup</translation>
    </message>
    <message>
        <source>JSON-Dateien (*.json);;Alle Dateien (*)</source>
        <translation>JSON Files (*.json);;All Files (*)</translation>
    </message>
</context>
<context>
    <name>BackupEncoder</name>
    <message>
        <source>Schreiben fehlgeschlagen: %1</source>
        <translation>Writing failed: %1</translation>
    </message>
</context>
<context>
    <name>BackupExporter</name>
    <message>
        <source>Die Datei „%1“ konnte nicht geschrieben werden: %2</source>
        <translation>The file “%1” could not be written: %2</translation>
    </message>
    <message>
        <source>Das Sicherheitsbackup konnte nicht angelegt werden: Ab „%1“ sind alle Namen vergeben.</source>
        <translation>The safety backup could not be created: every name from “%1” on is taken.</translation>
    </message>
</context>
<context>
    <name>BackupReader</name>
    <message>
        <source>Die Datei ist kein gültiges JSON: %1.</source>
        <translation>The file is not valid JSON: %1.</translation>
    </message>
    <message>
        <source>Gedicht %1: %2</source>
        <translation>Poem %1: %2</translation>
    </message>
    <message>
        <source>Feld „%1“ hat einen ungültigen Typ (erwartet: %2).</source>
        <translation>Field “%1” has an invalid type (expected: %2).</translation>
    </message>
    <message>
        <source>Pflichtfeld „%1“ fehlt.</source>
        <translation>Required field “%1” is missing.</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>text</translation>
    </message>
    <message>
        <source>Wahrheitswert</source>
        <translation>true or false</translation>
    </message>
    <message>
        <source>ganze Zahl</source>
        <translation>whole number</translation>
    </message>
    <message>
        <source>Feld „%1“ enthält kein gültiges Datum: „%2“ (erwartet wird die Form 2026-11-14T21:03:47Z).</source>
        <translation>Field “%1” does not contain a valid date: “%2” (expected the form 2026-11-14T21:03:47Z).</translation>
    </message>
    <message>
        <source>Feld „id“ ist keine gültige UUID: „%1“.</source>
        <translation>Field “id” is not a valid UUID: “%1”.</translation>
    </message>
    <message>
        <source>Base64-Text</source>
        <translation>Base64 text</translation>
    </message>
    <message>
        <source>Feld „%1“ ist kein gültiges Base64.</source>
        <translation>Field “%1” is not valid Base64.</translation>
    </message>
    <message>
        <source>Der Eintrag ist kein JSON-Objekt.</source>
        <translation>The entry is not a JSON object.</translation>
    </message>
    <message>
        <source>Liste</source>
        <translation>list</translation>
    </message>
    <message>
        <source>Die Datei enthält kein Backup: Das Dokument ist kein JSON-Objekt.</source>
        <translation>The file does not contain a backup: the document is not a JSON object.</translation>
    </message>
    <message>
        <source>Die Datei ist leer.</source>
        <translation>The file is empty.</translation>
    </message>
    <message>
        <source>Die Datei ist nicht UTF-8-kodiert (UTF-16 erkannt).</source>
        <translation>The file is not UTF-8 encoded (UTF-16 detected).</translation>
    </message>
</context>
<context>
    <name>BackupRestoreDialog</name>
    <message>
        <source>Backup wiederherstellen</source>
        <translation>Restore Backup</translation>
    </message>
    <message>
        <source>%1 · erstellt am %2</source>
        <translation>%1 · created %2</translation>
    </message>
    <message>
        <source>würden ergänzt</source>
        <translation>would be added</translation>
    </message>
    <message>
        <source>würden geändert</source>
        <translation>would be updated</translation>
    </message>
    <message numerus="yes">
        <source>%n im Papierkorb</source>
        <translation>
            <numerusform>%n in the Trash</numerusform>
            <numerusform>%n in the Trash</numerusform>
        </translation>
    </message>
    <message>
        <source>Vor jeder Wiederherstellung legt OdeLeaf automatisch eine Sicherheitskopie deines aktuellen Archivs an.</source>
        <translation>Before every restore, OdeLeaf automatically makes a safety copy of your current archive.</translation>
    </message>
    <message>
        <source>Abbrechen</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>Sicherheitskopie erstellen</source>
        <translation>Create Safety Copy</translation>
    </message>
</context>
<context>
    <name>BackupStatus</name>
    <message numerus="yes">
        <source>Sicherung erstellt: %n Gedichte gespeichert. Datei: %1</source>
        <translation>
            <numerusform>Backup created: %n poem saved. File: %1</numerusform>
            <numerusform>Backup created: %n poems saved. File: %1</numerusform>
        </translation>
    </message>
    <message>
        <source>Sicherung konnte nicht erstellt werden: %1</source>
        <translation>Backup could not be created: %1</translation>
    </message>
    <message>
        <source>Backup abgebrochen.</source>
        <translation>Backup canceled.</translation>
    </message>
    <message>
        <source>Backup-Wiederherstellung abgebrochen.</source>
        <translation>Backup restore canceled.</translation>
    </message>
    <message>
        <source>Backup konnte nicht gelesen werden: %1</source>
        <translation>Backup could not be read: %1</translation>
    </message>
    <message>
        <source>Wiederherstellung abgeschlossen: %1 neu ergänzt, %2 aktualisiert. Sicherheitskopie: %3</source>
        <translation>Restore complete: %1 added, %2 updated. Safety copy: %3</translation>
    </message>
    <message>
        <source>Wiederherstellung abgebrochen: Die Sicherheitskopie oder das Einspielen ist fehlgeschlagen (%1)</source>
        <translation>Restore canceled: the safety copy or the restore itself failed (%1)</translation>
    </message>
    <message numerus="yes">
        <source>Automatische Tagessicherung erstellt: %n Gedichte gespeichert. Datei: %1</source>
        <translation>
            <numerusform>Automatic daily backup created: %n poem saved. File: %1</numerusform>
            <numerusform>Automatic daily backup created: %n poems saved. File: %1</numerusform>
        </translation>
    </message>
    <message>
        <source>Automatische Tagessicherung fehlgeschlagen: %1</source>
        <translation>Automatic daily backup failed: %1</translation>
    </message>
    <message numerus="yes">
        <source>Sicherung erstellt: %n Gedicht gespeichert. Datei: %1</source>
        <translation>
            <numerusform>Backup created: %n poem saved. File: %1</numerusform>
            <numerusform>Backup created: %n poems saved. File: %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Automatische Tagessicherung erstellt: %n Gedicht gespeichert. Datei: %1</source>
        <translation>
            <numerusform>Automatic daily backup created: %n poem saved. File: %1</numerusform>
            <numerusform>Automatic daily backup created: %n poems saved. File: %1</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>BoundedFileReader</name>
    <message>
        <source>Keine normale Datei: %1</source>
        <translation>Not a regular file: %1</translation>
    </message>
    <message>
        <source>Die Datei „%1“ wurde nicht gefunden.</source>
        <translation>The file “%1” was not found.</translation>
    </message>
    <message>
        <source>Die Datei „%1“ konnte nicht geöffnet werden: %2</source>
        <translation>The file “%1” could not be opened: %2</translation>
    </message>
    <message>
        <source>Die Datei „%1“ ist zu groß (über %2 MB).</source>
        <translation>The file “%1” is too large (over %2 MB).</translation>
    </message>
    <message>
        <source>Die Datei „%1“ konnte nicht gelesen werden: %2</source>
        <translation>The file “%1” could not be read: %2</translation>
    </message>
</context>
<context>
    <name>CSVFileReader</name>
    <message>
        <source>Datei nicht gefunden: %1</source>
        <translation>File not found: %1</translation>
    </message>
    <message>
        <source>Keine gewöhnliche Datei: %1</source>
        <translation>Not a regular file: %1</translation>
    </message>
    <message>
        <source>Die Datei ist größer als %1 MB und wird nicht gelesen.</source>
        <translation>The file is larger than %1 MB and is not read.</translation>
    </message>
</context>
<context>
    <name>CSVImportActions</name>
    <message>
        <source>CSV-Datei importieren</source>
        <translation>Import CSV File</translation>
    </message>
    <message>
        <source>Titel, Kategorien, Daten und Markierungen aus einer Tabelle übernehmen</source>
        <translation>Take titles, categories, dates and marks from a spreadsheet</translation>
    </message>
    <message>
        <source>CSV-Datei auswählen</source>
        <translation>Choose CSV File</translation>
    </message>
    <message>
        <source>CSV-Dateien (*.csv *.txt);;Alle Dateien (*)</source>
        <translation>CSV files (*.csv *.txt);;All files (*)</translation>
    </message>
</context>
<context>
    <name>CSVImporter</name>
    <message>
        <source>CSV Fehler: %1 | %2</source>
        <translation>CSV error: %1 | %2</translation>
    </message>
    <message>
        <source>(kein Header geparst)</source>
        <translation>(no header parsed)</translation>
    </message>
    <message>
        <source>Header: %1</source>
        <translation>Header: %1</translation>
    </message>
    <message>
        <source>Keine Datenzeilen. Diagnose: bytes=%1</source>
        <translation>No data rows. Diagnostics: bytes=%1</translation>
    </message>
    <message>
        <source>ja</source>
        <translation>yes</translation>
    </message>
    <message>
        <source>nein</source>
        <translation>no</translation>
    </message>
    <message>
        <source>Datei konnte nicht gelesen werden: %1 | %2</source>
        <translation>The file could not be read: %1 | %2</translation>
    </message>
    <message>
        <source>Leere Datei</source>
        <translation>Empty file</translation>
    </message>
    <message>
        <source>CSV-Import abgebrochen: Sicherheitsbackup fehlgeschlagen (%1)</source>
        <translation>CSV import cancelled: safety backup failed (%1)</translation>
    </message>
    <message>
        <source>CSV Import: %1 neu, %2 aktualisiert, %3 übersprungen. Zeilen: %4, Spalten: %5, Trennzeichen: %6. Sicherheitsbackup: %7. %8</source>
        <translation>CSV import: %1 new, %2 updated, %3 skipped. Rows: %4, columns: %5, separator: %6. Safety backup: %7. %8</translation>
    </message>
    <message>
        <source>CSV-Auswahl abgebrochen.</source>
        <translation>CSV selection cancelled.</translation>
    </message>
    <message>
        <source>Die Kategorien der Tabelle wurden nicht in die Liste übernommen: %1</source>
        <translation>The spreadsheet’s categories were not added to the list: %1</translation>
    </message>
</context>
<context>
    <name>CSVTextDecoder</name>
    <message>
        <source>CSV Encoding nicht lesbar:</source>
        <translation>CSV encoding not readable:</translation>
    </message>
    <message>
        <source>BOM %1, aber keine gültige UTF-16-Folge</source>
        <translation>BOM %1, but no valid UTF-16 sequence</translation>
    </message>
    <message>
        <source>kein UTF-16, UTF-8 ungültig ab Byte %1 (0x%2)</source>
        <translation>not UTF-16, UTF-8 invalid from byte %1 (0x%2)</translation>
    </message>
</context>
<context>
    <name>CategoryFilter</name>
    <message>
        <source>Ohne Kategorie</source>
        <translation>Uncategorized</translation>
    </message>
</context>
<context>
    <name>CliTexts</name>
    <message>
        <source>Datei konnte nicht gelesen werden: %1</source>
        <translation>Could not read file: %1</translation>
    </message>
    <message>
        <source>Speichern fehlgeschlagen: %1</source>
        <translation>Saving failed: %1</translation>
    </message>
    <message>
        <source>Gespeichert</source>
        <translation>Saved</translation>
    </message>
    <message>
        <source>Gedicht nicht gefunden: %1</source>
        <translation>Poem not found: %1</translation>
    </message>
    <message>
        <source>Ordner nicht gefunden: %1</source>
        <translation>Folder not found: %1</translation>
    </message>
    <message>
        <source>Gedicht liegt im Papierkorb: %1</source>
        <translation>Poem is in the Trash: %1</translation>
    </message>
    <message>
        <source>Gedicht liegt bereits im Papierkorb: %1</source>
        <translation>Poem is already in the Trash: %1</translation>
    </message>
    <message>
        <source>Gedicht liegt nicht im Papierkorb: %1</source>
        <translation>Poem is not in the Trash: %1</translation>
    </message>
    <message>
        <source>Gib ein Wort ein, zu dem OdeLeaf Reime suchen soll.</source>
        <translation>Enter a word for OdeLeaf to find rhymes for.</translation>
    </message>
    <message>
        <source>Ungültige Zahl bei einer Option</source>
        <translation>Invalid number in an option</translation>
    </message>
    <message>
        <source>--assign erwartet DATEI=ID: %1</source>
        <translation>--assign expects FILE=ID: %1</translation>
    </message>
    <message>
        <source>Datei nicht im Ordner gefunden: %1</source>
        <translation>File not found in the folder: %1</translation>
    </message>
    <message>
        <source>Die Ausgabe konnte nicht geschrieben werden: %1</source>
        <translation>The output could not be written: %1</translation>
    </message>
</context>
<context>
    <name>DisplayedPoemText</name>
    <message>
        <source>— kein Text —</source>
        <translation>— no text —</translation>
    </message>
</context>
<context>
    <name>DocxPackage</name>
    <message>
        <source>Die Datei ist leer.</source>
        <translation>The file is empty.</translation>
    </message>
    <message>
        <source>Im DOCX-Paket fehlt der Teil %1.</source>
        <translation>The DOCX package is missing the part %1.</translation>
    </message>
    <message>
        <source>Der Teil %1 ist zu groß (über %2 MB entpackt).</source>
        <translation>The part %1 is too large (over %2 MB uncompressed).</translation>
    </message>
    <message>
        <source>Der Teil %1 konnte nicht geöffnet werden.</source>
        <translation>The part %1 could not be opened.</translation>
    </message>
    <message>
        <source>Das DOCX-Paket ist beschädigt.</source>
        <translation>The DOCX package is damaged.</translation>
    </message>
    <message>
        <source>Die Datei wurde nicht gefunden.</source>
        <translation>The file was not found.</translation>
    </message>
    <message>
        <source>Die Datei konnte nicht gelesen werden.</source>
        <translation>The file could not be read.</translation>
    </message>
    <message>
        <source>Die Datei ist kein DOCX-Dokument.</source>
        <translation>The file is not a DOCX document.</translation>
    </message>
    <message>
        <source>Nicht genug Speicher zum Lesen der Datei.</source>
        <translation>Not enough memory to read the file.</translation>
    </message>
</context>
<context>
    <name>DocxTextReader</name>
    <message>
        <source>Die Datei ist kein Word-Dokument (word/document.xml fehlt).</source>
        <translation>The file is not a Word document (word/document.xml is missing).</translation>
    </message>
    <message>
        <source>Das Dokument-XML ist fehlerhaft (Zeile %1): %2</source>
        <translation>The document XML is malformed (line %1): %2</translation>
    </message>
    <message>
        <source>Dokumenttypdefinitionen werden nicht gelesen.</source>
        <translation>Document type definitions are not read.</translation>
    </message>
</context>
<context>
    <name>DuplicateChecker</name>
    <message>
        <source>Duplikatprüfung: %1 gleiche Titel, %2 ähnliche Titel gefunden.</source>
        <translation>Duplicate check: %1 identical titles, %2 similar titles found.</translation>
    </message>
    <message>
        <source>Keine Auffälligkeiten gefunden</source>
        <translation>Nothing Unusual Found</translation>
    </message>
    <message>
        <source>Die Prüfung hat keine gleichen oder sehr ähnlichen Titel gefunden.</source>
        <translation>The check found no identical or very similar titles.</translation>
    </message>
    <message>
        <source>Gleicher Titel „%1“:</source>
        <translation>Identical title “%1”:</translation>
    </message>
    <message>
        <source>Ähnliche Titel (%1 %):</source>
        <translation>Similar titles (%1 %):</translation>
    </message>
    <message>
        <source>1 Gedicht geprüft.</source>
        <translation>1 poem checked.</translation>
    </message>
    <message>
        <source>%1 Gedichte geprüft.</source>
        <translation>%1 poems checked.</translation>
    </message>
    <message numerus="yes">
        <source>%n gleiche Titel</source>
        <translation>
            <numerusform>%n identical title</numerusform>
            <numerusform>%n identical titles</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n ähnliche Titel gefunden.</source>
        <translation>
            <numerusform>%n similar title found.</numerusform>
            <numerusform>%n similar titles found.</numerusform>
        </translation>
    </message>
    <message>
        <source>Es wurde nichts verändert.</source>
        <translation>Nothing was changed.</translation>
    </message>
</context>
<context>
    <name>DuplicateReportWindow</name>
    <message>
        <source>Gedicht ohne Titel</source>
        <translation>Untitled Poem</translation>
    </message>
    <message>
        <source>Duplikate prüfen</source>
        <translation>Check for Duplicates</translation>
    </message>
    <message>
        <source>Duplikatprüfung</source>
        <translation>Duplicate Check</translation>
    </message>
    <message>
        <source>Titel</source>
        <translation>Title</translation>
    </message>
    <message>
        <source>Datum</source>
        <translation>Date</translation>
    </message>
    <message>
        <source>Kategorie</source>
        <translation>Category</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Doppelklick auf ein Gedicht zeigt es in der Bibliothek.</source>
        <translation>Double-click a poem to show it in the library.</translation>
    </message>
    <message>
        <source>In der Bibliothek zeigen</source>
        <translation>Show in Library</translation>
    </message>
    <message>
        <source>Gleiche Titel (%1)</source>
        <translation>Identical Titles (%1)</translation>
    </message>
    <message>
        <source>„%1“ – %2 Gedichte</source>
        <translation>“%1” – %2 poems</translation>
    </message>
    <message>
        <source>Ähnliche Titel (%1)</source>
        <translation>Similar Titles (%1)</translation>
    </message>
    <message>
        <source>%1 % ähnlich</source>
        <translation>%1 % similar</translation>
    </message>
    <message>
        <source>ohne Datum</source>
        <translation>no date</translation>
    </message>
    <message>
        <source>ja</source>
        <translation>yes</translation>
    </message>
    <message>
        <source>fehlt</source>
        <translation>missing</translation>
    </message>
</context>
<context>
    <name>EditorAppearance</name>
    <message>
        <source>Papier</source>
        <translation>Paper</translation>
    </message>
    <message>
        <source>Standard</source>
        <translation>Standard</translation>
    </message>
</context>
<context>
    <name>EditorToolBar</name>
    <message>
        <source>Textformatierung</source>
        <translation>Text Formatting</translation>
    </message>
    <message>
        <source>Farbe</source>
        <translation>Color</translation>
    </message>
    <message>
        <source>Abstand</source>
        <translation>Spacing</translation>
    </message>
    <message>
        <source>Einfügen</source>
        <translation>Insert</translation>
    </message>
    <message>
        <source>Ansicht</source>
        <translation>View</translation>
    </message>
    <message>
        <source>Mehr</source>
        <translation>More</translation>
    </message>
</context>
<context>
    <name>ExportFormat</name>
    <message>
        <source>PDF: Druckfertig</source>
        <translation>PDF: Print-Ready</translation>
    </message>
    <message>
        <source>DOCX: Word-Dokument</source>
        <translation>DOCX: Word Document</translation>
    </message>
    <message>
        <source>TXT: Rohtext speichern</source>
        <translation>TXT: Save Plain Text</translation>
    </message>
    <message>
        <source>PDF-Dokument (*.pdf)</source>
        <translation>PDF Document (*.pdf)</translation>
    </message>
    <message>
        <source>Word-Dokument (*.docx)</source>
        <translation>Word Document (*.docx)</translation>
    </message>
    <message>
        <source>Textdatei (*.txt)</source>
        <translation>Text File (*.txt)</translation>
    </message>
</context>
<context>
    <name>ExtractError</name>
    <message>
        <source>Kein Text extrahiert (leer).</source>
        <translation>No text extracted (empty).</translation>
    </message>
    <message>
        <source>PDFKit nicht verfügbar.</source>
        <translation>PDFKit not available.</translation>
    </message>
    <message>
        <source>PDF konnte nicht geöffnet werden.</source>
        <translation>PDF could not be opened.</translation>
    </message>
    <message>
        <source>Nicht unterstütztes Dateiformat: %1</source>
        <translation>Unsupported file format: %1</translation>
    </message>
    <message>
        <source>Extraktion fehlgeschlagen: %1</source>
        <translation>Extraction failed: %1</translation>
    </message>
</context>
<context>
    <name>FeedbackDialog</name>
    <message>
        <source>Feedback senden</source>
        <translation>Send Feedback</translation>
    </message>
    <message>
        <source>Ergänze den vorbereiteten Text und schicke ihn mit deinem E-Mail-Programm an %1. Er enthält Version und System, aber keine Gedichte.</source>
        <translation>Complete the prepared text and send it to %1 with your email program. It includes the version and system, but no poems.</translation>
    </message>
    <message>
        <source>Text kopieren</source>
        <translation>Copy Text</translation>
    </message>
    <message>
        <source>In E-Mail öffnen</source>
        <translation>Open in Email</translation>
    </message>
    <message>
        <source>Der Text liegt in der Zwischenablage.</source>
        <translation>The text is on the clipboard.</translation>
    </message>
    <message>
        <source>Kein E-Mail-Programm gefunden. Der Text liegt in der Zwischenablage; schicke ihn an %1.</source>
        <translation>No email program found. The text is on the clipboard; send it to %1.</translation>
    </message>
    <message>
        <source>Feedback zu OdeLeaf %1</source>
        <translation>Feedback on OdeLeaf %1</translation>
    </message>
    <message>
        <source>Hallo,

mir ist in OdeLeaf Folgendes aufgefallen:


So lässt es sich nachvollziehen:


Das hätte ich erwartet:


––
OdeLeaf %1
%2 (%3)
Qt %4</source>
        <translation>Hello,

I noticed the following in OdeLeaf:


How to reproduce it:


What I expected:


––
OdeLeaf %1
%2 (%3)
Qt %4</translation>
    </message>
    <message>
        <source>Ergänze den vorbereiteten Text und kopiere ihn, um ihn dort weiterzugeben, wo du OdeLeaf bezogen hast. Er enthält Version und System, aber keine Gedichte.</source>
        <translation>Complete the prepared text and copy it to pass it on where you got OdeLeaf from. It includes the version and system, but no poems.</translation>
    </message>
</context>
<context>
    <name>FileManagerReveal</name>
    <message>
        <source>Kein Dateimanager gefunden. Der Ordner ist: %1</source>
        <translation>No file manager found. The folder is: %1</translation>
    </message>
</context>
<context>
    <name>FindReplaceBar</name>
    <message>
        <source>Suchen</source>
        <translation>Find</translation>
    </message>
    <message>
        <source>Ersetzen durch</source>
        <translation>Replace with</translation>
    </message>
    <message>
        <source>Vorheriger Treffer</source>
        <translation>Previous Match</translation>
    </message>
    <message>
        <source>Nächster Treffer</source>
        <translation>Next Match</translation>
    </message>
    <message>
        <source>Ersetzen</source>
        <translation>Replace</translation>
    </message>
    <message>
        <source>Alle ersetzen</source>
        <translation>Replace All</translation>
    </message>
    <message>
        <source>Suche schließen</source>
        <translation>Close Find Bar</translation>
    </message>
</context>
<context>
    <name>FolderScan</name>
    <message>
        <source>Ordner wird gescannt…</source>
        <translation>Scanning folder…</translation>
    </message>
    <message>
        <source>Snapshot der Gedichte…</source>
        <translation>Taking a snapshot of the poems…</translation>
    </message>
    <message>
        <source>Dateien sammeln…</source>
        <translation>Collecting files…</translation>
    </message>
    <message>
        <source>Dateien: %1 | Scan-Time: %2s | Mapping…</source>
        <translation>Files: %1 | Scan time: %2s | Mapping…</translation>
    </message>
    <message>
        <source>Dateien: %1 | Scan: %2s | Map: %3s | Matching…</source>
        <translation>Files: %1 | Scan: %2s | Map: %3s | Matching…</translation>
    </message>
    <message>
        <source>Scan: %1 | Proposals: %2 | Scan %3s | Map %4s | Match %5s</source>
        <translation>Scan: %1 | Proposals: %2 | Scan %3s | Map %4s | Match %5s</translation>
    </message>
</context>
<context>
    <name>FolderScanController</name>
    <message>
        <source>Ordner scan</source>
        <translation>Scan Folder</translation>
    </message>
    <message>
        <source>Bilder-Ordner scan</source>
        <translation>Scan Image Folder</translation>
    </message>
    <message>
        <source>Texte aus einem Ordner mit DOCX- und PDF-Dateien den Gedichten zuordnen</source>
        <translation>Match texts from a folder of DOCX and PDF files to the poems</translation>
    </message>
    <message>
        <source>Bilder aus einem Ordner mit PNG- und JPEG-Dateien den Gedichten zuordnen</source>
        <translation>Match images from a folder of PNG and JPEG files to the poems</translation>
    </message>
    <message>
        <source>Ordner mit Bildern wählen</source>
        <translation>Choose Image Folder</translation>
    </message>
    <message>
        <source>Ordner mit Gedichttexten wählen</source>
        <translation>Choose Folder with Poem Texts</translation>
    </message>
    <message>
        <source>Ordner-Bookmark fehlgeschlagen: %1</source>
        <translation>Folder bookmark failed: %1</translation>
    </message>
    <message>
        <source>Der Ordner ist nicht mehr lesbar.</source>
        <translation>The folder can no longer be read.</translation>
    </message>
</context>
<context>
    <name>ImportActions</name>
    <message>
        <source>Import rückgängig</source>
        <translation>Undo Import</translation>
    </message>
    <message>
        <source>Letzter Importbericht</source>
        <translation>Last Import Report</translation>
    </message>
    <message>
        <source>Stellt die Gedichttexte vor dem letzten Import wieder her</source>
        <translation>Restores the poems’ texts from before the last import</translation>
    </message>
    <message>
        <source>Zeigt, was der letzte Import mit jeder Datei gemacht hat</source>
        <translation>Shows what the last import did with each file</translation>
    </message>
    <message>
        <source>Kein Importbericht vorhanden.</source>
        <translation>There is no import report.</translation>
    </message>
    <message>
        <source>Text importieren</source>
        <translation>Import Text</translation>
    </message>
    <message>
        <source>Der bisherige Text lässt sich mit „Import rückgängig“ zurückholen.</source>
        <translation>The current text can be brought back with “Undo Import”.</translation>
    </message>
    <message>
        <source>Ersetzen</source>
        <translation>Replace</translation>
    </message>
    <message>
        <source>Abbrechen</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>Text konnte nicht importiert werden: %1</source>
        <translation>Text could not be imported: %1</translation>
    </message>
    <message>
        <source>Das Gedicht ist nicht mehr da.</source>
        <translation>The poem no longer exists.</translation>
    </message>
</context>
<context>
    <name>ImportProposalTableModel</name>
    <message>
        <source>— keine Zuordnung —</source>
        <translation>— not assigned —</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1%</translation>
    </message>
    <message>
        <source>(unbekannt)</source>
        <translation>(unknown)</translation>
    </message>
    <message>
        <source>Kein Vorschlag</source>
        <translation>No suggestion</translation>
    </message>
    <message>
        <source>Klicken, um die Zuordnung zu ändern</source>
        <translation>Click to change the assignment</translation>
    </message>
    <message>
        <source>Datei</source>
        <translation>File</translation>
    </message>
    <message>
        <source>Vorschlag</source>
        <translation>Suggestion</translation>
    </message>
    <message>
        <source>Score</source>
        <translation>Score</translation>
    </message>
    <message>
        <source>Zuordnung</source>
        <translation>Assignment</translation>
    </message>
    <message>
        <source>Diesem Gedicht ist noch eine andere Datei zugeordnet; übernommen würde nur der Text der zuletzt gelesenen.</source>
        <translation>Another file is assigned to this poem as well; only the text of the one read last would be kept.</translation>
    </message>
</context>
<context>
    <name>ImportReport</name>
    <message>
        <source>Import abgeschlossen</source>
        <translation>Import complete</translation>
    </message>
    <message>
        <source>Import mit Hinweisen abgeschlossen</source>
        <translation>Import complete with notes</translation>
    </message>
    <message>
        <source>%1 Dateien geprüft</source>
        <translation>%1 files checked</translation>
    </message>
    <message>
        <source>Übernommen</source>
        <translation>Imported</translation>
    </message>
    <message>
        <source>Übersprungen</source>
        <translation>Skipped</translation>
    </message>
    <message>
        <source>Fehlgeschlagen</source>
        <translation>Failed</translation>
    </message>
    <message>
        <source>Letzter Textimport</source>
        <translation>Last Text Import</translation>
    </message>
    <message>
        <source>Letzter Bildimport</source>
        <translation>Last Image Import</translation>
    </message>
    <message>
        <source>Import abgebrochen</source>
        <translation>Import cancelled</translation>
    </message>
    <message>
        <source>1 Datei geprüft</source>
        <translation>1 file checked</translation>
    </message>
</context>
<context>
    <name>ImportReportWindow</name>
    <message>
        <source>%1 – %2</source>
        <translation>%1 – %2</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>Datei</source>
        <translation>File</translation>
    </message>
    <message>
        <source>Gedicht</source>
        <translation>Poem</translation>
    </message>
    <message>
        <source>Grund</source>
        <translation>Reason</translation>
    </message>
    <message>
        <source>Technische Details</source>
        <translation>Technical Details</translation>
    </message>
    <message>
        <source>Gründe:</source>
        <translation>Reasons:</translation>
    </message>
    <message>
        <source>dd.MM.yyyy, HH:mm</source>
        <translation>MM/dd/yyyy, h:mm AP</translation>
    </message>
    <message>
        <source>Schließen</source>
        <translation>Close</translation>
    </message>
</context>
<context>
    <name>ImportReviewOptions</name>
    <message>
        <source>DOCX importieren</source>
        <translation>Import DOCX</translation>
    </message>
    <message>
        <source>PDF importieren</source>
        <translation>Import PDF</translation>
    </message>
    <message>
        <source>Nur wenn Gedichttext leer</source>
        <translation>Only if poem text is empty</translation>
    </message>
    <message>
        <source>DOCX zuerst, PDF nur noch wenn danach leer</source>
        <translation>DOCX first, PDF only if still empty afterwards</translation>
    </message>
    <message>
        <source>PDF Mindestscore:</source>
        <translation>PDF minimum score:</translation>
    </message>
    <message>
        <source>PDF Margin:</source>
        <translation>PDF margin:</translation>
    </message>
    <message>
        <source>Timeout DOCX: %1s</source>
        <translation>DOCX timeout: %1s</translation>
    </message>
    <message>
        <source>Timeout PDF: %1s</source>
        <translation>PDF timeout: %1s</translation>
    </message>
    <message>
        <source>PDF import: Score ≥ Mindestscore UND (best - zweitbest) ≥ Margin.</source>
        <translation>PDF import: score ≥ minimum score AND (best - second best) ≥ margin.</translation>
    </message>
</context>
<context>
    <name>ImportReviewWindow</name>
    <message>
        <source>Bildimport prüfen</source>
        <translation>Review Image Import</translation>
    </message>
    <message>
        <source>Textimport prüfen</source>
        <translation>Review Text Import</translation>
    </message>
    <message>
        <source>Scan: %1 | Vorschläge: %2</source>
        <translation>Scan: %1 | Proposals: %2</translation>
    </message>
    <message>
        <source>Keine Vorschläge in dieser Ansicht.</source>
        <translation>No proposals in this view.</translation>
    </message>
    <message>
        <source>Importoptionen</source>
        <translation>Import Options</translation>
    </message>
    <message>
        <source>Ein Gedicht, das schon Text hat, wird übersprungen.</source>
        <translation>A poem that already has text is skipped.</translation>
    </message>
    <message>
        <source>Zwei Durchgänge: PDF nur für Gedichte, die nach dem DOCX-Durchgang noch leer sind.</source>
        <translation>Two passes: PDF only for poems that are still empty after the DOCX pass.</translation>
    </message>
    <message>
        <source>Schließen</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>Bilder anhängen</source>
        <translation>Attach Images</translation>
    </message>
    <message>
        <source>Importieren</source>
        <translation>Import</translation>
    </message>
    <message>
        <source>(ohne Titel)</source>
        <translation>(untitled)</translation>
    </message>
    <message>
        <source>%1 — %2</source>
        <translation>%1 — %2</translation>
    </message>
    <message>
        <source>Keine Kandidaten gefunden</source>
        <translation>No Candidates Found</translation>
    </message>
    <message>
        <source>Aus allen Gedichten wählen…</source>
        <translation>Choose from All Poems…</translation>
    </message>
    <message>
        <source>%1 Datei angezeigt</source>
        <translation>%1 file shown</translation>
    </message>
    <message>
        <source>%1 Dateien angezeigt</source>
        <translation>%1 files shown</translation>
    </message>
    <message>
        <source>%v von %m</source>
        <translation>%v of %m</translation>
    </message>
    <message>
        <source>Abbrechen</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>Hält nach der Datei an, die gerade gelesen wird; Übernommenes bleibt.</source>
        <translation>Stops after the file being read; what was imported stays.</translation>
    </message>
    <message>
        <source>Ein Gedicht ist mehr als einer Datei zugeordnet; übernommen wird nur ein Text.</source>
        <translation>One poem is assigned to more than one file; only one text will be imported.</translation>
    </message>
    <message>
        <source>%1 Gedichte sind mehr als einer Datei zugeordnet; übernommen wird je nur ein Text.</source>
        <translation>%1 poems are assigned to more than one file; only one text each will be imported.</translation>
    </message>
</context>
<context>
    <name>ImportRun</name>
    <message>
        <source>Import läuft…</source>
        <translation>Import running…</translation>
    </message>
    <message>
        <source>Nichts zu importieren.</source>
        <translation>Nothing to import.</translation>
    </message>
    <message>
        <source>Sicherheitsbackup: %1.</source>
        <translation>Safety backup: %1.</translation>
    </message>
    <message>
        <source>Rückgängig ist danach im Hauptfenster verfügbar.</source>
        <translation>You can undo it in the main window.</translation>
    </message>
    <message>
        <source>Import fertig (%1): %2 gesetzt, %3 fehlgeschlagen. Leer: %4. Timeouts: %5. Übersprungen (hat Text): %6. Übersprungen (PDF Score&lt;%7%): %8. Übersprungen (PDF Margin&lt;%9%): %10. PDF übersprungen (Text bereits vorhanden): %11.</source>
        <translation>Import finished (%1): %2 set, %3 failed. Empty: %4. Timeouts: %5. Skipped (has text): %6. Skipped (PDF score&lt;%7%): %8. Skipped (PDF margin&lt;%9%): %10. PDF skipped (text already present): %11.</translation>
    </message>
    <message>
        <source>2-Phasen</source>
        <translation>2 phases</translation>
    </message>
    <message>
        <source>1-Pass</source>
        <translation>1 pass</translation>
    </message>
    <message>
        <source>Bildimport: %1 angehängt, %2 fehlgeschlagen.</source>
        <translation>Image import: %1 attached, %2 failed.</translation>
    </message>
    <message>
        <source>Import abgebrochen.</source>
        <translation>Import canceled.</translation>
    </message>
    <message>
        <source>Folder-Bookmark resolve fail: %1</source>
        <translation>Folder bookmark resolve failed: %1</translation>
    </message>
    <message>
        <source>Der Ordner ist nicht lesbar: %1</source>
        <translation>The folder cannot be read: %1</translation>
    </message>
    <message>
        <source>Sicherheitsbackup wird erstellt…</source>
        <translation>Writing safety backup…</translation>
    </message>
    <message>
        <source>Zu importieren: Bilder %1</source>
        <translation>To import: images %1</translation>
    </message>
    <message>
        <source>Zu importieren: DOCX %1, PDF %2</source>
        <translation>To import: DOCX %1, PDF %2</translation>
    </message>
    <message>
        <source>Import abgebrochen: Sicherheitsbackup fehlgeschlagen (%1)</source>
        <translation>Import canceled: safety backup failed (%1)</translation>
    </message>
    <message>
        <source>Bilder</source>
        <translation>Images</translation>
    </message>
    <message>
        <source>%1: Start… (0/%2)</source>
        <translation>%1: Starting… (0/%2)</translation>
    </message>
    <message>
        <source>PDF übersprungen, weil bereits Text vorhanden ist</source>
        <translation>PDF skipped because the poem already has text</translation>
    </message>
    <message>
        <source>PDF Score unter Mindestwert</source>
        <translation>PDF score below minimum</translation>
    </message>
    <message>
        <source>PDF Abstand zum zweitbesten Treffer zu klein</source>
        <translation>PDF margin to the second-best match too small</translation>
    </message>
    <message>
        <source>%1: %2/%3 – %4</source>
        <translation>%1: %2/%3 – %4</translation>
    </message>
    <message>
        <source>Datei ist leer (0 Byte).</source>
        <translation>File is empty (0 bytes).</translation>
    </message>
    <message>
        <source>Timeout nach %1s</source>
        <translation>Timeout after %1s</translation>
    </message>
    <message>
        <source>Text konnte nicht extrahiert werden</source>
        <translation>Text could not be extracted</translation>
    </message>
    <message>
        <source>Kein Text extrahiert</source>
        <translation>No text extracted</translation>
    </message>
    <message>
        <source>Gedicht hatte bereits Text</source>
        <translation>Poem already had text</translation>
    </message>
    <message>
        <source>Gedicht nicht gefunden</source>
        <translation>Poem not found</translation>
    </message>
    <message>
        <source>Speichern fehlgeschlagen</source>
        <translation>Saving failed</translation>
    </message>
    <message>
        <source>Abgebrochen nach %1 von %2 Dateien.</source>
        <translation>Canceled after %1 of %2 files.</translation>
    </message>
    <message>
        <source>Rückgängig-Datei konnte nicht geschrieben werden: %1</source>
        <translation>The undo file could not be written: %1</translation>
    </message>
    <message>
        <source>Importbericht konnte nicht geschrieben werden: %1</source>
        <translation>The import report could not be written: %1</translation>
    </message>
    <message>
        <source>Nicht lesbar: Der Dateiname ist kein gültiges UTF-8</source>
        <translation>Not readable: the file name is not valid UTF-8</translation>
    </message>
    <message>
        <source>Achtung: 1 Datei wurde nicht gespeichert (%1).</source>
        <translation>Warning: 1 file was not saved (%1).</translation>
    </message>
    <message>
        <source>Achtung: %1 Dateien wurden nicht gespeichert (%2).</source>
        <translation>Warning: %1 files were not saved (%2).</translation>
    </message>
</context>
<context>
    <name>ImportStateFiles</name>
    <message>
        <source>Keine normale Datei: %1</source>
        <translation>Not a regular file: %1</translation>
    </message>
    <message>
        <source>Die Datei „%1“ ist zu groß.</source>
        <translation>The file “%1” is too large.</translation>
    </message>
</context>
<context>
    <name>ImportUndo</name>
    <message>
        <source>Kein Import zum Rückgängigmachen vorhanden.</source>
        <translation>There is no import to undo.</translation>
    </message>
    <message>
        <source>Rückgängig fehlgeschlagen: %1</source>
        <translation>Undo failed: %1</translation>
    </message>
    <message>
        <source>Letzter Import rückgängig gemacht: %1 Gedichte wiederhergestellt.</source>
        <translation>Last import undone: %1 poems restored.</translation>
    </message>
    <message>
        <source>Letzter Import rückgängig gemacht: 1 Gedicht wiederhergestellt.</source>
        <translation>Last import undone: 1 poem restored.</translation>
    </message>
</context>
<context>
    <name>ImportWorkItem</name>
    <message>
        <source>(unbekannt)</source>
        <translation>(unknown)</translation>
    </message>
    <message>
        <source>(ohne Titel)</source>
        <translation>(untitled)</translation>
    </message>
</context>
<context>
    <name>IsolatedDocumentExtractor</name>
    <message>
        <source>Das Hilfsprogramm zum Lesen startet nicht: %1</source>
        <translation>The document reader helper does not start: %1</translation>
    </message>
    <message>
        <source>Die Antwort des Hilfsprogramms ist unlesbar.</source>
        <translation>The reply of the document reader helper is unreadable.</translation>
    </message>
    <message>
        <source>Zeitüberschreitung nach %1 s</source>
        <translation>Timed out after %1 s</translation>
    </message>
    <message>
        <source>Das Lesen des Dokuments wurde unerwartet abgebrochen.</source>
        <translation>Reading the document stopped unexpectedly.</translation>
    </message>
    <message>
        <source>Das Hilfsprogramm zum Lesen fehlt: %1</source>
        <translation>The document reader helper is missing: %1</translation>
    </message>
</context>
<context>
    <name>JsonCursor</name>
    <message>
        <source>%1 (Zeile %2, Spalte %3)</source>
        <translation>%1 (line %2, column %3)</translation>
    </message>
    <message>
        <source>unerwartetes Dateiende</source>
        <translation>unexpected end of file</translation>
    </message>
    <message>
        <source>„%1“ erwartet</source>
        <translation>“%1” expected</translation>
    </message>
    <message>
        <source>unerwartetes Zeichen</source>
        <translation>unexpected character</translation>
    </message>
    <message>
        <source>zu tief verschachtelt</source>
        <translation>nested too deeply</translation>
    </message>
    <message>
        <source>Objekt erwartet</source>
        <translation>object expected</translation>
    </message>
    <message>
        <source>Liste erwartet</source>
        <translation>list expected</translation>
    </message>
    <message>
        <source>„,“ oder „%1“ erwartet</source>
        <translation>“,” or “%1” expected</translation>
    </message>
    <message>
        <source>Feldname erwartet</source>
        <translation>field name expected</translation>
    </message>
    <message>
        <source>Steuerzeichen in einer Zeichenkette</source>
        <translation>control character in a string</translation>
    </message>
    <message>
        <source>unerwartetes Dateiende in einer Zeichenkette</source>
        <translation>unexpected end of file in a string</translation>
    </message>
    <message>
        <source>ungültige Escape-Sequenz</source>
        <translation>invalid escape sequence</translation>
    </message>
    <message>
        <source>Zeichenkette erwartet</source>
        <translation>string expected</translation>
    </message>
    <message>
        <source>ungültige UTF-8-Kodierung</source>
        <translation>invalid UTF-8 encoding</translation>
    </message>
    <message>
        <source>Wahrheitswert erwartet</source>
        <translation>true or false expected</translation>
    </message>
    <message>
        <source>„null“ erwartet</source>
        <translation>“null” expected</translation>
    </message>
    <message>
        <source>ungültige Zahl</source>
        <translation>invalid number</translation>
    </message>
    <message>
        <source>Zahl erwartet</source>
        <translation>number expected</translation>
    </message>
    <message>
        <source>Zahl außerhalb des gültigen Bereichs</source>
        <translation>number out of range</translation>
    </message>
    <message>
        <source>unerwartete Zeichen nach dem Dokument</source>
        <translation>unexpected characters after the document</translation>
    </message>
    <message>
        <source>Feldname „%1“ kommt doppelt vor</source>
        <translation>field name “%1” occurs twice</translation>
    </message>
</context>
<context>
    <name>LibraryBrowser</name>
    <message>
        <source>%1 von %2 Gedicht gefunden</source>
        <translation>%1 of %2 poem found</translation>
    </message>
    <message>
        <source>%1 von %2 Gedichte gefunden</source>
        <translation>%1 of %2 poems found</translation>
    </message>
    <message>
        <source>%1 Gedicht gefunden</source>
        <translation>%1 poem found</translation>
    </message>
    <message>
        <source>%1 Gedichte gefunden</source>
        <translation>%1 poems found</translation>
    </message>
    <message>
        <source>%1 Gedicht in %2</source>
        <translation>%1 poem in %2</translation>
    </message>
    <message>
        <source>%1 Gedichte in %2</source>
        <translation>%1 poems in %2</translation>
    </message>
    <message>
        <source>%1 Gedicht ohne Text</source>
        <translation>%1 poem without text</translation>
    </message>
    <message>
        <source>%1 Gedichte ohne Text</source>
        <translation>%1 poems without text</translation>
    </message>
    <message>
        <source>%1 veröffentlichte Gedicht</source>
        <translation>%1 published poem</translation>
    </message>
    <message>
        <source>%1 veröffentlichte Gedichte</source>
        <translation>%1 published poems</translation>
    </message>
    <message>
        <source>%1 Podcast-Gedicht</source>
        <translation>%1 podcast poem</translation>
    </message>
    <message>
        <source>%1 Podcast-Gedichte</source>
        <translation>%1 podcast poems</translation>
    </message>
    <message>
        <source>Diese Ansicht zeigt nur Gedichte ohne hinterlegten Text. Nutze „Ordner scan“ für mehrere Dateien oder „Text importieren“ am Gedicht.</source>
        <translation>This view shows only poems without text. Use “Scan Folder” for several files or “Import Text” on a poem.</translation>
    </message>
    <message>
        <source>Gedicht dupliziert: %1</source>
        <translation>Poem duplicated: %1</translation>
    </message>
    <message>
        <source>Gedicht in den Papierkorb verschoben: %1</source>
        <translation>Poem moved to the Trash: %1</translation>
    </message>
    <message>
        <source>(ohne Titel)</source>
        <translation>(untitled)</translation>
    </message>
</context>
<context>
    <name>LibrarySidebar</name>
    <message>
        <source>Bibliothek</source>
        <translation>Library</translation>
    </message>
    <message>
        <source>Kategorien</source>
        <translation>Categories</translation>
    </message>
    <message>
        <source>Aktionen</source>
        <translation>Actions</translation>
    </message>
    <message>
        <source>%1 im Papierkorb</source>
        <translation>%1 in the Trash</translation>
    </message>
    <message>
        <source>Alle Kategorien</source>
        <translation>All Categories</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Neues Gedicht</source>
        <translation>New Poem</translation>
    </message>
    <message>
        <source>Duplizieren</source>
        <translation>Duplicate</translation>
    </message>
    <message>
        <source>In den Papierkorb</source>
        <translation>Move to Trash</translation>
    </message>
    <message>
        <source>Papierkorb öffnen…</source>
        <translation>Open Trash…</translation>
    </message>
    <message>
        <source>Schreibmodus</source>
        <translation>Writing Mode</translation>
    </message>
    <message>
        <source>Suchen</source>
        <translation>Find</translation>
    </message>
    <message>
        <source>&amp;Datei</source>
        <translation>&amp;File</translation>
    </message>
    <message>
        <source>Beenden</source>
        <translation>Quit</translation>
    </message>
    <message>
        <source>&amp;Bearbeiten</source>
        <translation>&amp;Edit</translation>
    </message>
    <message>
        <source>Rückgängig</source>
        <translation>Undo</translation>
    </message>
    <message>
        <source>Wiederholen</source>
        <translation>Redo</translation>
    </message>
    <message>
        <source>Ausschneiden</source>
        <translation>Cut</translation>
    </message>
    <message>
        <source>Kopieren</source>
        <translation>Copy</translation>
    </message>
    <message>
        <source>Einfügen</source>
        <translation>Paste</translation>
    </message>
    <message>
        <source>Alles auswählen</source>
        <translation>Select All</translation>
    </message>
    <message>
        <source>&amp;Ansicht</source>
        <translation>&amp;View</translation>
    </message>
    <message>
        <source>Sortieren nach</source>
        <translation>Sort By</translation>
    </message>
    <message>
        <source>&amp;Hilfe</source>
        <translation>&amp;Help</translation>
    </message>
    <message>
        <source>Nach Updates suchen…</source>
        <translation>Check for Updates…</translation>
    </message>
    <message>
        <source>Datenschutzhinweise</source>
        <translation>Privacy Notice</translation>
    </message>
    <message>
        <source>Feedback senden…</source>
        <translation>Send Feedback…</translation>
    </message>
    <message>
        <source>Über OdeLeaf</source>
        <translation>About OdeLeaf</translation>
    </message>
    <message>
        <source>Werkzeugleiste</source>
        <translation>Toolbar</translation>
    </message>
    <message>
        <source>OdeLeaf</source>
        <translation>OdeLeaf</translation>
    </message>
    <message>
        <source>Änderungen konnten nicht gespeichert werden: %1</source>
        <translation>Changes could not be saved: %1</translation>
    </message>
    <message>
        <source>Einstellungen…</source>
        <translation>Settings…</translation>
    </message>
    <message>
        <source>Updates kommen über die Paketverwaltung deines Systems.</source>
        <translation>Updates come through your system&apos;s package manager.</translation>
    </message>
    <message>
        <source>&amp;Archiv</source>
        <translation>&amp;Archive</translation>
    </message>
</context>
<context>
    <name>OdeLeafReaderPackageCodec</name>
    <message>
        <source>Das Feld „%1“ fehlt oder hat einen falschen Typ.</source>
        <translation>The field “%1” is missing or has the wrong type.</translation>
    </message>
    <message>
        <source>Die Datei ist kein Reader-Paket: %1</source>
        <translation>The file is not a reader package: %1</translation>
    </message>
</context>
<context>
    <name>OdeLeafReaderPackageExporter</name>
    <message numerus="yes">
        <source>Reader-Paket erstellt: %n Gedichte gespeichert. Datei: %1</source>
        <translation>
            <numerusform>Reader package created: %n poem saved. File: %1</numerusform>
            <numerusform>Reader package created: %n poems saved. File: %1</numerusform>
        </translation>
    </message>
    <message>
        <source>Reader-Paket konnte nicht erstellt werden: %1</source>
        <translation>Reader package could not be created: %1</translation>
    </message>
    <message>
        <source>Reader-Paket abgebrochen.</source>
        <translation>Reader package canceled.</translation>
    </message>
    <message numerus="yes">
        <source>Reader-Paket erstellt: %n Gedicht gespeichert. Datei: %1</source>
        <translation>
            <numerusform>Reader package created: %n poem saved. File: %1</numerusform>
            <numerusform>Reader package created: %n poems saved. File: %1</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ParagraphSpacingOption</name>
    <message>
        <source>Eng</source>
        <translation>Tight</translation>
    </message>
    <message>
        <source>Normal</source>
        <translation>Normal</translation>
    </message>
    <message>
        <source>Luftig</source>
        <translation>Airy</translation>
    </message>
</context>
<context>
    <name>PdfPageLayout</name>
    <message>
        <source>PDF konnte nicht erstellt werden.</source>
        <translation>The PDF could not be created.</translation>
    </message>
</context>
<context>
    <name>PersistenceController</name>
    <message>
        <source>Archiv konnte nicht geöffnet werden: %1</source>
        <translation>Archive could not be opened: %1</translation>
    </message>
</context>
<context>
    <name>Poem</name>
    <message>
        <source>Der formatierte Text von „%1“ konnte nicht aus dem Archiv gelesen werden. Das Gedicht bleibt im Archiv, wie es ist.</source>
        <translation>The formatted text of “%1” could not be read from the archive. The poem stays in the archive as it is.</translation>
    </message>
</context>
<context>
    <name>PoemDetailView</name>
    <message>
        <source>Kein Gedicht ausgewählt</source>
        <translation>No Poem Selected</translation>
    </message>
    <message>
        <source>Wähle links ein Gedicht aus oder lege mit „Neues Gedicht“ ein neues an.</source>
        <translation>Select a poem on the left or create one with “New Poem”.</translation>
    </message>
    <message>
        <source>Schreibmodus</source>
        <translation>Writing Mode</translation>
    </message>
    <message>
        <source>Schreibmodus beenden</source>
        <translation>Exit Writing Mode</translation>
    </message>
    <message>
        <source>Zurück zur Bibliothek (Esc)</source>
        <translation>Back to Library (Esc)</translation>
    </message>
    <message>
        <source>Titel</source>
        <translation>Title</translation>
    </message>
    <message>
        <source>Ohne Kategorie</source>
        <translation>Uncategorized</translation>
    </message>
    <message>
        <source>Kategorie</source>
        <translation>Category</translation>
    </message>
    <message>
        <source>dd.MM.yyyy</source>
        <translation>MM/dd/yyyy</translation>
    </message>
    <message>
        <source>Ohne Datum</source>
        <translation>No date</translation>
    </message>
    <message>
        <source>Datum</source>
        <translation>Date</translation>
    </message>
    <message>
        <source>Veröffentlicht</source>
        <translation>Published</translation>
    </message>
    <message>
        <source>Podcast</source>
        <translation>Podcast</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>Notizen</source>
        <translation>Notes</translation>
    </message>
    <message>
        <source>Gedanken, Quellen, Fassungen – nur für dich</source>
        <translation>Thoughts, sources, versions – just for you</translation>
    </message>
    <message>
        <source>Duplizieren</source>
        <translation>Duplicate</translation>
    </message>
    <message>
        <source>In den Papierkorb</source>
        <translation>Move to Trash</translation>
    </message>
    <message>
        <source>Gespeichert</source>
        <translation>Saved</translation>
    </message>
    <message>
        <source>Nicht gespeichert: %1</source>
        <translation>Not saved: %1</translation>
    </message>
    <message>
        <source>Exportieren</source>
        <translation>Export</translation>
    </message>
    <message>
        <source>Text importieren…</source>
        <translation>Import Text…</translation>
    </message>
    <message>
        <source>Den Text dieses Gedichts aus einer DOCX-, PDF- oder Textdatei übernehmen</source>
        <translation>Take this poem’s text from a DOCX, PDF or text file</translation>
    </message>
    <message>
        <source>Fassungen</source>
        <translation>Versions</translation>
    </message>
    <message>
        <source>Frühere Fassungen dieses Gedichts vergleichen und zurückholen</source>
        <translation>Compare and bring back earlier versions of this poem</translation>
    </message>
</context>
<context>
    <name>PoemEditorActions</name>
    <message>
        <source>Rückgängig</source>
        <translation>Undo</translation>
    </message>
    <message>
        <source>Wiederholen</source>
        <translation>Redo</translation>
    </message>
    <message>
        <source>Fett</source>
        <translation>Bold</translation>
    </message>
    <message>
        <source>F</source>
        <comment>bold button</comment>
        <translation>B</translation>
    </message>
    <message>
        <source>Kursiv</source>
        <translation>Italic</translation>
    </message>
    <message>
        <source>K</source>
        <comment>italic button</comment>
        <translation>I</translation>
    </message>
    <message>
        <source>Unterstrichen</source>
        <translation>Underline</translation>
    </message>
    <message>
        <source>U</source>
        <comment>underline button</comment>
        <translation>U</translation>
    </message>
    <message>
        <source>Schrift größer</source>
        <translation>Bigger Font</translation>
    </message>
    <message>
        <source>Schrift kleiner</source>
        <translation>Smaller Font</translation>
    </message>
    <message>
        <source>Linksbündig</source>
        <translation>Align Left</translation>
    </message>
    <message>
        <source>Zentriert</source>
        <translation>Center</translation>
    </message>
    <message>
        <source>Rechtsbündig</source>
        <translation>Align Right</translation>
    </message>
    <message>
        <source>Formatierung entfernen</source>
        <translation>Remove Formatting</translation>
    </message>
    <message>
        <source>Rechtschreibung prüfen</source>
        <translation>Check Spelling</translation>
    </message>
    <message>
        <source>Standardabschluss einfügen</source>
        <translation>Insert Standard Closing</translation>
    </message>
    <message>
        <source>Bildunterschrift einfügen</source>
        <translation>Insert Caption</translation>
    </message>
    <message>
        <source>Abschnittsmarke einfügen</source>
        <translation>Insert Section Mark</translation>
    </message>
    <message>
        <source>Bild in das Gedicht einfügen</source>
        <translation>Insert Image into Poem</translation>
    </message>
    <message>
        <source>Suchen und ersetzen</source>
        <translation>Find and Replace</translation>
    </message>
    <message>
        <source>Nächster Treffer</source>
        <translation>Next Match</translation>
    </message>
    <message>
        <source>Vorheriger Treffer</source>
        <translation>Previous Match</translation>
    </message>
    <message>
        <source>Reime…</source>
        <translation>Rhymes…</translation>
    </message>
    <message>
        <source>Reime zum markierten Wort suchen</source>
        <translation>Find Rhymes for the Selected Word</translation>
    </message>
    <message>
        <source>Notizen</source>
        <translation>Notes</translation>
    </message>
    <message>
        <source>Schreibmodus</source>
        <translation>Writing Mode</translation>
    </message>
    <message>
        <source>Fokusmodus</source>
        <translation>Focus Mode</translation>
    </message>
    <message>
        <source>Werkzeugleiste ausblenden</source>
        <translation>Hide Toolbar</translation>
    </message>
    <message>
        <source>Papieransicht</source>
        <translation>Paper View</translation>
    </message>
    <message>
        <source>Gedicht als neue Variante duplizieren</source>
        <translation>Duplicate Poem as New Variant</translation>
    </message>
    <message>
        <source>Textfarbe</source>
        <translation>Text Color</translation>
    </message>
    <message>
        <source>Zeilen- und Absatzabstand</source>
        <translation>Line and Paragraph Spacing</translation>
    </message>
    <message>
        <source>Bildgröße ändern</source>
        <translation>Change Image Size</translation>
    </message>
    <message>
        <source>Reime</source>
        <translation>Rhymes</translation>
    </message>
    <message>
        <source>Einfügen</source>
        <translation>Insert</translation>
    </message>
    <message>
        <source>Ansicht</source>
        <translation>View</translation>
    </message>
    <message>
        <source>Textformatierung</source>
        <translation>Text Formatting</translation>
    </message>
    <message>
        <source>Ersetzen…</source>
        <translation>Replace…</translation>
    </message>
    <message>
        <source>Versmaß</source>
        <translation>Metre</translation>
    </message>
    <message>
        <source>Tabulator einfügen</source>
        <translation>Insert Tab</translation>
    </message>
</context>
<context>
    <name>PoemEditorPane</name>
    <message>
        <source>Gespeichert</source>
        <translation>Saved</translation>
    </message>
    <message>
        <source>Notizen</source>
        <translation>Notes</translation>
    </message>
    <message>
        <source>Gedanken, Quellen, Fassungen …</source>
        <translation>Thoughts, sources, versions …</translation>
    </message>
    <message>
        <source>Bild konnte nicht gespeichert werden: %1</source>
        <translation>Image could not be saved: %1</translation>
    </message>
    <message>
        <source>Formatierter Text konnte nicht gespeichert werden: %1</source>
        <translation>Formatted text could not be saved: %1</translation>
    </message>
    <message>
        <source>Wähle ein Bild, das an der aktuellen Cursorposition eingefügt werden soll.</source>
        <translation>Choose an image to insert at the current cursor position.</translation>
    </message>
    <message>
        <source>Bilder (*.png *.jpg *.jpeg *.gif *.bmp *.webp)</source>
        <translation>Images (*.png *.jpg *.jpeg *.gif *.bmp *.webp)</translation>
    </message>
    <message>
        <source>Kein Webbrowser gefunden. Die Reimseite ist: %1</source>
        <translation>No web browser found. The rhyme page is: %1</translation>
    </message>
</context>
<context>
    <name>PoemExport</name>
    <message>
        <source>ja</source>
        <translation>yes</translation>
    </message>
    <message>
        <source>nein</source>
        <translation>no</translation>
    </message>
    <message>
        <source>dd.MM.yyyy</source>
        <translation>MM/dd/yyyy</translation>
    </message>
    <message>
        <source>Datum</source>
        <translation>Date</translation>
    </message>
    <message>
        <source>Kategorie</source>
        <translation>Category</translation>
    </message>
    <message>
        <source>(ohne Titel)</source>
        <translation>(untitled)</translation>
    </message>
    <message>
        <source>unbekannt</source>
        <translation>unknown</translation>
    </message>
    <message>
        <source>Veröffentlicht</source>
        <translation>Published</translation>
    </message>
    <message>
        <source>Podcast</source>
        <translation>Podcast</translation>
    </message>
    <message>
        <source>— kein Text —</source>
        <translation>— no text —</translation>
    </message>
    <message>
        <source>Gedicht</source>
        <translation>Poem</translation>
    </message>
    <message>
        <source>Die Exportdatei wurde nicht korrekt geschrieben: %1</source>
        <translation>The export file was not written correctly: %1</translation>
    </message>
    <message>
        <source>Export fehlgeschlagen: %1</source>
        <translation>Export failed: %1</translation>
    </message>
    <message>
        <source>Exportiert: %1</source>
        <translation>Exported: %1</translation>
    </message>
</context>
<context>
    <name>PoemExportActions</name>
    <message>
        <source>Exportieren</source>
        <translation>Export</translation>
    </message>
    <message>
        <source>Ctrl+Shift+E</source>
        <translation>Ctrl+Shift+E</translation>
    </message>
    <message>
        <source>Drucken …</source>
        <translation>Print…</translation>
    </message>
    <message>
        <source>Druckvorschau …</source>
        <translation>Print Preview…</translation>
    </message>
    <message>
        <source>Ctrl+Alt+P</source>
        <translation>Ctrl+Alt+P</translation>
    </message>
    <message>
        <source>Gedicht exportieren</source>
        <translation>Export Poem</translation>
    </message>
    <message>
        <source>Druckvorschau fehlgeschlagen: %1</source>
        <translation>Print preview failed: %1</translation>
    </message>
    <message>
        <source>Die PDF-Datei konnte nicht gelesen werden.</source>
        <translation>The PDF file could not be read.</translation>
    </message>
</context>
<context>
    <name>PoemFactory</name>
    <message>
        <source>Gedicht</source>
        <translation>Poem</translation>
    </message>
    <message>
        <source>%1 Kopie</source>
        <translation>%1 Copy</translation>
    </message>
</context>
<context>
    <name>PoemField</name>
    <message>
        <source>Kennung</source>
        <translation>Identifier</translation>
    </message>
    <message>
        <source>Titel</source>
        <translation>Title</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Kategorie</source>
        <translation>Category</translation>
    </message>
    <message>
        <source>Datum</source>
        <translation>Date</translation>
    </message>
    <message>
        <source>Notizen</source>
        <translation>Notes</translation>
    </message>
    <message>
        <source>Veröffentlicht</source>
        <translation>Published</translation>
    </message>
    <message>
        <source>Podcast</source>
        <translation>Podcast</translation>
    </message>
    <message>
        <source>Externe Kennung</source>
        <translation>External identifier</translation>
    </message>
    <message>
        <source>Erstellt</source>
        <translation>Created</translation>
    </message>
    <message>
        <source>Geändert</source>
        <translation>Modified</translation>
    </message>
    <message>
        <source>Papierkorb</source>
        <translation>Trash</translation>
    </message>
</context>
<context>
    <name>PoemListPane</name>
    <message>
        <source>Suchen</source>
        <translation>Search</translation>
    </message>
    <message>
        <source>Suchen in</source>
        <translation>Search in</translation>
    </message>
    <message>
        <source>Sortieren nach</source>
        <translation>Sort by</translation>
    </message>
    <message>
        <source>Noch keine Gedichte</source>
        <translation>No Poems Yet</translation>
    </message>
    <message>
        <source>Lege mit „Neues Gedicht“ dein erstes Gedicht an.</source>
        <translation>Create your first poem with “New Poem”.</translation>
    </message>
    <message>
        <source>Keine Treffer</source>
        <translation>No Results</translation>
    </message>
    <message>
        <source>Kein Gedicht passt zu „%1“.</source>
        <translation>No poem matches “%1”.</translation>
    </message>
    <message>
        <source>Keine Gedichte in dieser Ansicht</source>
        <translation>No Poems in This View</translation>
    </message>
    <message>
        <source>Duplizieren</source>
        <translation>Duplicate</translation>
    </message>
    <message>
        <source>In den Papierkorb legen</source>
        <translation>Move to Trash</translation>
    </message>
</context>
<context>
    <name>PoemPickerDialog</name>
    <message>
        <source>Gedicht auswählen</source>
        <translation>Choose Poem</translation>
    </message>
    <message>
        <source>Titel suchen</source>
        <translation>Search titles</translation>
    </message>
    <message>
        <source>(ohne Titel)</source>
        <translation>(untitled)</translation>
    </message>
    <message>
        <source>Abbrechen</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>Auswählen</source>
        <translation>Choose</translation>
    </message>
    <message>
        <source>%1 Gedicht</source>
        <translation>%1 poem</translation>
    </message>
    <message>
        <source>%1 Gedichte</source>
        <translation>%1 poems</translation>
    </message>
    <message>
        <source>%1 von %2 Gedicht</source>
        <translation>%1 of %2 poem</translation>
    </message>
    <message>
        <source>%1 von %2 Gedichten</source>
        <translation>%1 of %2 poems</translation>
    </message>
</context>
<context>
    <name>PoemPieces</name>
    <message>
        <source>Bildunterschrift</source>
        <translation>Caption</translation>
    </message>
</context>
<context>
    <name>PoemRichText</name>
    <message>
        <source>Bild konnte nicht gelesen werden: %1 (%2)</source>
        <translation>Image could not be read: %1 (%2)</translation>
    </message>
    <message>
        <source>Ein Bild des Gedichts konnte nicht gelesen werden.</source>
        <translation>An image of the poem could not be read.</translation>
    </message>
</context>
<context>
    <name>PoemRow</name>
    <message>
        <source>Gedicht ohne Titel</source>
        <translation>Untitled Poem</translation>
    </message>
</context>
<context>
    <name>PoemRowText</name>
    <message>
        <source>Noch kein Gedichttext hinterlegt.</source>
        <translation>No poem text yet.</translation>
    </message>
    <message>
        <source>unbekannt</source>
        <translation>unknown</translation>
    </message>
    <message>
        <source>dd.MM.yyyy</source>
        <translation>MM/dd/yyyy</translation>
    </message>
    <message>
        <source>Veröffentlicht</source>
        <translation>Published</translation>
    </message>
    <message>
        <source>Podcast</source>
        <translation>Podcast</translation>
    </message>
    <message>
        <source>Entwurf</source>
        <translation>Draft</translation>
    </message>
</context>
<context>
    <name>PoemSortMode</name>
    <message>
        <source>Zuletzt geändert</source>
        <translation>Last Modified</translation>
    </message>
    <message>
        <source>Titel</source>
        <translation>Title</translation>
    </message>
    <message>
        <source>Kategorie</source>
        <translation>Category</translation>
    </message>
    <message>
        <source>Datum</source>
        <translation>Date</translation>
    </message>
    <message>
        <source>Ohne Text zuerst</source>
        <translation>Without Text First</translation>
    </message>
</context>
<context>
    <name>PoemStore</name>
    <message>
        <source>Die Archivdatei stammt aus einer neueren Version von OdeLeaf (Schema %1, diese Version kennt Schema %2).</source>
        <translation>The archive file comes from a newer version of OdeLeaf (schema %1; this version knows schema %2).</translation>
    </message>
    <message>
        <source>Die Datei ist kein OdeLeaf-Archiv.</source>
        <translation>The file is not an OdeLeaf archive.</translation>
    </message>
    <message>
        <source>Das Archiv ist schreibgeschützt und kann nicht auf den aktuellen Stand gebracht werden.</source>
        <translation>The archive is read-only and cannot be brought up to date.</translation>
    </message>
    <message>
        <source>Archiv ist schreibgeschützt – Änderungen sind nicht möglich.</source>
        <translation>The archive is read-only – changes are not possible.</translation>
    </message>
    <message>
        <source>Das Archiv ist beschädigt: Bilder des Gedichts „%1“ fehlen.</source>
        <translation>The archive is damaged: pictures of the poem “%1” are missing.</translation>
    </message>
    <message>
        <source>Das Gedicht ist nicht mehr im Archiv; ein anderes Programm hat es gelöscht.</source>
        <translation>The poem is no longer in the archive; another program deleted it.</translation>
    </message>
</context>
<context>
    <name>PoemTextDocument</name>
    <message>
        <source>Eingebettetes Objekt</source>
        <translation>Embedded object</translation>
    </message>
    <message>
        <source>%1-Grafik</source>
        <translation>%1 graphic</translation>
    </message>
    <message>
        <source>%1
%2 × %3 pt, %4
wird unverändert aufbewahrt</source>
        <translation>%1
%2 × %3 pt, %4
kept unchanged</translation>
    </message>
</context>
<context>
    <name>PoemVersion</name>
    <message>
        <source>vor Bearbeitung</source>
        <translation>before editing</translation>
    </message>
    <message>
        <source>vor Entfernen der Kategorie</source>
        <translation>before removing the category</translation>
    </message>
    <message>
        <source>vor Umbenennen der Kategorie</source>
        <translation>before renaming the category</translation>
    </message>
    <message>
        <source>vor Wiederherstellung von Fassung %1</source>
        <translation>before restoring version %1</translation>
    </message>
    <message>
        <source>Bearbeitung</source>
        <translation>Editing</translation>
    </message>
    <message>
        <source>von Hand gesichert</source>
        <translation>saved by hand</translation>
    </message>
    <message>
        <source>vor Wiederherstellung</source>
        <translation>before restore</translation>
    </message>
    <message>
        <source>vor CSV-Import</source>
        <translation>before CSV import</translation>
    </message>
    <message>
        <source>vor Textimport</source>
        <translation>before text import</translation>
    </message>
    <message>
        <source>vor Bildimport</source>
        <translation>before image import</translation>
    </message>
    <message>
        <source>vor Import rückgängig</source>
        <translation>before undoing the import</translation>
    </message>
</context>
<context>
    <name>PoemVersionStore</name>
    <message>
        <source>Die Fassung ist beschädigt.</source>
        <translation>The version is damaged.</translation>
    </message>
    <message>
        <source>Die Fassung ist beschädigt: Bilder fehlen.</source>
        <translation>The version is damaged: pictures are missing.</translation>
    </message>
</context>
<context>
    <name>PoemVersions</name>
    <message>
        <source>Das Gedicht ist noch nicht gespeichert.</source>
        <translation>The poem has not been saved yet.</translation>
    </message>
    <message>
        <source>Fassung %1 gibt es nicht.</source>
        <translation>There is no version %1.</translation>
    </message>
    <message>
        <source>Fassung gesichert.</source>
        <translation>Version saved.</translation>
    </message>
    <message>
        <source>Fassung wiederhergestellt.</source>
        <translation>Version restored.</translation>
    </message>
</context>
<context>
    <name>PoemVersionsPanel</name>
    <message>
        <source>Keine Änderungen gegenüber jetzt.</source>
        <translation>No changes compared with now.</translation>
    </message>
    <message numerus="yes">
        <source>… %n unveränderte Strophen</source>
        <translation>
            <numerusform>… %n unchanged stanza</numerusform>
            <numerusform>… %n unchanged stanzas</numerusform>
        </translation>
    </message>
    <message>
        <source>+%1 / −%2 Wörter</source>
        <translation>+%1 / −%2 words</translation>
    </message>
    <message>
        <source>Fassung konnte nicht gesichert werden: %1</source>
        <translation>Version could not be saved: %1</translation>
    </message>
    <message>
        <source>Fassungen</source>
        <translation>Versions</translation>
    </message>
    <message>
        <source>Schließen (Esc)</source>
        <translation>Close (Esc)</translation>
    </message>
    <message>
        <source>Noch keine Fassungen. Eine Fassung entsteht, wenn du ein anderes Gedicht wählst, zehn Minuten nicht schreibst oder „Fassung sichern…“ wählst.</source>
        <translation>No versions yet. A version is kept when you choose another poem, stop writing for ten minutes or choose “Save Version…”.</translation>
    </message>
    <message>
        <source>Vergleich mit jetzt</source>
        <translation>Compare with Now</translation>
    </message>
    <message>
        <source>Fassung</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>Vergleich</source>
        <translation>Comparison</translation>
    </message>
    <message>
        <source>Diese Fassung wiederherstellen</source>
        <translation>Restore This Version</translation>
    </message>
    <message>
        <source>Als neues Gedicht</source>
        <translation>As New Poem</translation>
    </message>
    <message>
        <source>Fassung sichern…</source>
        <translation>Save Version…</translation>
    </message>
    <message>
        <source>Fassung konnte nicht wiederhergestellt werden: %1</source>
        <translation>Version could not be restored: %1</translation>
    </message>
    <message>
        <source>Gedicht konnte nicht angelegt werden: %1</source>
        <translation>Poem could not be created: %1</translation>
    </message>
    <message>
        <source>Fassung sichern</source>
        <translation>Save Version</translation>
    </message>
    <message>
        <source>Name der Fassung (freiwillig), z. B. „an Verlag geschickt“:</source>
        <translation>Name of the version (optional), e.g. “sent to publisher”:</translation>
    </message>
</context>
<context>
    <name>PrintHelper</name>
    <message>
        <source>Drucken fehlgeschlagen: %1</source>
        <translation>Printing failed: %1</translation>
    </message>
    <message>
        <source>Die PDF-Datei konnte nicht gelesen werden.</source>
        <translation>The PDF file could not be read.</translation>
    </message>
    <message>
        <source>Druckdialog konnte nicht geöffnet werden.</source>
        <translation>The print dialog could not be opened.</translation>
    </message>
    <message>
        <source>Drucken</source>
        <translation>Print</translation>
    </message>
    <message>
        <source>Der Drucker nimmt keinen Auftrag an.</source>
        <translation>The printer does not accept the job.</translation>
    </message>
    <message>
        <source>Drucke …</source>
        <translation>Printing…</translation>
    </message>
    <message>
        <source>Abbrechen</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>Seite %1 konnte nicht begonnen werden.</source>
        <translation>Page %1 could not be started.</translation>
    </message>
    <message>
        <source>Seite %1 konnte nicht gezeichnet werden.</source>
        <translation>Page %1 could not be drawn.</translation>
    </message>
    <message>
        <source>Der Druckauftrag wurde nicht abgeschlossen.</source>
        <translation>The print job was not completed.</translation>
    </message>
</context>
<context>
    <name>PrintPreviewWindow</name>
    <message>
        <source>Druckvorschau – %1</source>
        <translation>Print Preview – %1</translation>
    </message>
    <message>
        <source>Drucken</source>
        <translation>Print</translation>
    </message>
    <message>
        <source>In Vorschau öffnen</source>
        <translation>Open in Viewer</translation>
    </message>
    <message>
        <source>Druckvorschau fehlgeschlagen: %1</source>
        <translation>Print preview failed: %1</translation>
    </message>
    <message>
        <source>Kein PDF-Programm gefunden.</source>
        <translation>No PDF viewer found.</translation>
    </message>
</context>
<context>
    <name>PrivacyNoticeDialog</name>
    <message>
        <source>Datenschutzhinweise</source>
        <translation>Privacy Notice</translation>
    </message>
    <message>
        <source>Deine Gedichte, Importe, Exporte und Sicherungen bleiben auf deinem Computer. OdeLeaf speichert alles im eigenen Datenordner und in den Ordnern, die du selbst auswählst; es gibt kein Konto und keine Cloud-Synchronisierung.</source>
        <translation>Your poems, imports, exports and backups stay on your computer. OdeLeaf stores everything in its own data folder and in the folders you choose yourself; there is no account and no cloud sync.</translation>
    </message>
    <message>
        <source>Die Suche nach Updates lädt nur die Liste der verfügbaren Versionen herunter. Dabei werden keine Gedichte, Titel, Notizen oder anderen Inhalte deines Archivs übertragen.</source>
        <translation>Checking for updates only downloads the list of available versions. No poems, titles, notes or other content of your archive are sent.</translation>
    </message>
    <message>
        <source>Reimseiten öffnest du selbst im Browser; dabei erhält die gewählte Website nur das Wort, das du nachschlägst.</source>
        <translation>You open rhyme websites yourself in your browser; the chosen website only receives the word you look up.</translation>
    </message>
    <message>
        <source>Feedback verschickst du mit deinem eigenen E-Mail-Programm. OdeLeaf sendet nichts von sich aus.</source>
        <translation>You send feedback with your own email program. OdeLeaf never sends anything on its own.</translation>
    </message>
    <message>
        <source>Diese Ausgabe von OdeLeaf sucht nicht selbst nach Updates und verbindet sich dafür mit keinem Server; neue Versionen kommen über die Paketverwaltung deines Systems.</source>
        <translation>This edition of OdeLeaf does not check for updates itself and connects to no server for them; new versions come through your system&apos;s package manager.</translation>
    </message>
</context>
<context>
    <name>ProposalFilter</name>
    <message>
        <source>Offen</source>
        <translation>Open</translation>
    </message>
    <message>
        <source>Unsicher</source>
        <translation>Uncertain</translation>
    </message>
    <message>
        <source>Zugeordnet</source>
        <translation>Assigned</translation>
    </message>
    <message>
        <source>Alle</source>
        <translation>All</translation>
    </message>
</context>
<context>
    <name>ReaderPackageAction</name>
    <message>
        <source>Reader-Paket exportieren…</source>
        <translation>Export Reader Package…</translation>
    </message>
    <message>
        <source>Alle Gedichte außerhalb des Papierkorbs für die App „OdeLeaf Reader“ speichern</source>
        <translation>Save all poems outside the Trash for the “OdeLeaf Reader” app</translation>
    </message>
    <message>
        <source>OdeLeaf Reader-Paket speichern</source>
        <translation>Save OdeLeaf Reader Package</translation>
    </message>
    <message>
        <source>OdeLeaf Reader-Pakete (*.odeleafreader)</source>
        <translation>OdeLeaf Reader Packages (*.odeleafreader)</translation>
    </message>
</context>
<context>
    <name>RestoreMode</name>
    <message>
        <source>Nur fehlende ergänzen</source>
        <translation>Add Missing Only</translation>
    </message>
    <message>
        <source>Ergänzen und aktualisieren</source>
        <translation>Add and Update</translation>
    </message>
</context>
<context>
    <name>RestorePreview</name>
    <message>
        <source>Keine Änderungen nötig</source>
        <translation>No Changes Needed</translation>
    </message>
    <message>
        <source>Backup prüfen</source>
        <translation>Check Backup</translation>
    </message>
    <message>
        <source>Wiederherstellung bereit</source>
        <translation>Ready to Restore</translation>
    </message>
    <message>
        <source>Dieses Backup entspricht bereits deinem aktuellen Archiv.</source>
        <translation>This backup already matches your current archive.</translation>
    </message>
    <message>
        <source>Das Backup ist älter als mindestens eine lokale Änderung. Lokale Gedichte werden nicht gelöscht.</source>
        <translation>The backup is older than at least one local change. Local poems will not be deleted.</translation>
    </message>
    <message>
        <source>OdeLeaf kann fehlende Gedichte ergänzen und vorhandene Einträge aktualisieren.</source>
        <translation>OdeLeaf can add missing poems and update existing entries.</translation>
    </message>
</context>
<context>
    <name>RhymeWordDialog</name>
    <message>
        <source>Reime suchen</source>
        <translation>Find Rhymes</translation>
    </message>
    <message>
        <source>Gib ein Wort ein, zu dem OdeLeaf Reime suchen soll.</source>
        <translation>Enter a word for OdeLeaf to find rhymes for.</translation>
    </message>
    <message>
        <source>Wort</source>
        <translation>Word</translation>
    </message>
    <message>
        <source>Suchen</source>
        <translation>Find</translation>
    </message>
    <message>
        <source>Abbrechen</source>
        <translation>Cancel</translation>
    </message>
</context>
<context>
    <name>RichPoemTextView</name>
    <message>
        <source>Keine Vorschläge</source>
        <translation>No Suggestions</translation>
    </message>
    <message>
        <source>Wort ignorieren</source>
        <translation>Ignore Word</translation>
    </message>
    <message>
        <source>Rückgängig</source>
        <translation>Undo</translation>
    </message>
    <message>
        <source>Wiederholen</source>
        <translation>Redo</translation>
    </message>
    <message>
        <source>Ausschneiden</source>
        <translation>Cut</translation>
    </message>
    <message>
        <source>Kopieren</source>
        <translation>Copy</translation>
    </message>
    <message>
        <source>Einfügen</source>
        <translation>Paste</translation>
    </message>
    <message>
        <source>Alles auswählen</source>
        <translation>Select All</translation>
    </message>
    <message>
        <source>Reime zum markierten Wort suchen</source>
        <translation>Find Rhymes for the Selected Word</translation>
    </message>
</context>
<context>
    <name>RichTextEditing</name>
    <message>
        <source>„%1“ ist kein lesbares Bild (%2).</source>
        <translation>“%1” is not a readable image (%2).</translation>
    </message>
    <message>
        <source>Der Text kann keine Bilder aufnehmen.</source>
        <translation>The text cannot hold images.</translation>
    </message>
    <message>
        <source>Das Bild ist leer.</source>
        <translation>The image is empty.</translation>
    </message>
</context>
<context>
    <name>SafetyBackupFile</name>
    <message>
        <source>unlesbar</source>
        <translation>unreadable</translation>
    </message>
    <message>
        <source>1 Gedicht</source>
        <translation>1 poem</translation>
    </message>
    <message>
        <source>%1 Gedichte</source>
        <translation>%1 poems</translation>
    </message>
    <message>
        <source>dd.MM.yyyy HH:mm</source>
        <translation>MM/dd/yyyy h:mm AP</translation>
    </message>
</context>
<context>
    <name>SafetyBackupFolder</name>
    <message>
        <source>Die Datei „%1“ konnte nicht gelöscht werden: %2</source>
        <translation>The file “%1” could not be deleted: %2</translation>
    </message>
    <message>
        <source>1 Sicherheitsbackup entfernt.</source>
        <translation>1 safety backup removed.</translation>
    </message>
    <message>
        <source>%1 Sicherheitsbackups entfernt.</source>
        <translation>%1 safety backups removed.</translation>
    </message>
</context>
<context>
    <name>SafetyBackupKind</name>
    <message>
        <source>Vor Wiederherstellung</source>
        <translation>Before restore</translation>
    </message>
    <message>
        <source>Vor Textimport</source>
        <translation>Before text import</translation>
    </message>
    <message>
        <source>Vor Bildimport</source>
        <translation>Before image import</translation>
    </message>
    <message>
        <source>Vor CSV-Import</source>
        <translation>Before CSV import</translation>
    </message>
    <message>
        <source>Tagesbackup</source>
        <translation>Daily backup</translation>
    </message>
    <message>
        <source>Sonstige Sicherung</source>
        <translation>Other backup</translation>
    </message>
</context>
<context>
    <name>SafetyBackupWindow</name>
    <message>
        <source>Wiederherstellen…</source>
        <translation>Restore…</translation>
    </message>
    <message>
        <source>Im Dateimanager zeigen</source>
        <translation>Show in File Manager</translation>
    </message>
    <message>
        <source>Löschen…</source>
        <translation>Delete…</translation>
    </message>
    <message>
        <source>Sicherheitsbackups</source>
        <translation>Safety Backups</translation>
    </message>
    <message>
        <source>OdeLeaf sichert das ganze Archiv vor jeder Wiederherstellung und jedem Import sowie einmal am Tag. Tagesbackups der letzten 14 Tage bleiben erhalten, ältere eines pro Monat; alle anderen löschst nur du.</source>
        <translation>OdeLeaf backs up the whole archive before every restore and every import, and once a day. Daily backups of the last 14 days are kept, older ones one per month; all others are deleted only by you.</translation>
    </message>
    <message>
        <source>Art</source>
        <translation>Kind</translation>
    </message>
    <message>
        <source>Erstellt</source>
        <translation>Created</translation>
    </message>
    <message>
        <source>Gedichte</source>
        <translation>Poems</translation>
    </message>
    <message>
        <source>Größe</source>
        <translation>Size</translation>
    </message>
    <message>
        <source>Datei</source>
        <translation>File</translation>
    </message>
    <message>
        <source>Noch keine Sicherheitsbackups</source>
        <translation>No safety backups yet</translation>
    </message>
    <message>
        <source>Sie entstehen beim ersten Start des Tages und vor jeder Wiederherstellung oder jedem Import.</source>
        <translation>They are made at the first start of the day and before every restore or import.</translation>
    </message>
    <message>
        <source>1 Sicherung, %1</source>
        <translation>1 backup, %1</translation>
    </message>
    <message>
        <source>%1 Sicherungen, zusammen %2</source>
        <translation>%1 backups, %2 in total</translation>
    </message>
    <message>
        <source>Sicherheitsbackup gelöscht: %1</source>
        <translation>Safety backup deleted: %1</translation>
    </message>
    <message>
        <source>Sicherheitsbackup löschen?</source>
        <translation>Delete safety backup?</translation>
    </message>
    <message>
        <source>„%1“ (%2, %3) wird endgültig gelöscht. Das lässt sich nicht rückgängig machen.</source>
        <translation>“%1” (%2, %3) will be deleted for good. This cannot be undone.</translation>
    </message>
    <message>
        <source>Löschen</source>
        <translation>Delete</translation>
    </message>
    <message>
        <source>Abbrechen</source>
        <translation>Cancel</translation>
    </message>
</context>
<context>
    <name>SearchMode</name>
    <message>
        <source>Titel</source>
        <translation>Title</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Kategorie</source>
        <translation>Category</translation>
    </message>
    <message>
        <source>Alles</source>
        <translation>Everything</translation>
    </message>
</context>
<context>
    <name>SettingsWindow</name>
    <message>
        <source>Backups</source>
        <translation>Backups</translation>
    </message>
    <message>
        <source>CSV-Import</source>
        <translation>CSV import</translation>
    </message>
    <message>
        <source>Dokument-Import</source>
        <translation>Document import</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>Export</translation>
    </message>
    <message>
        <source>Systemsprache</source>
        <translation>System language</translation>
    </message>
    <message>
        <source>Einstellungen</source>
        <translation>Settings</translation>
    </message>
    <message>
        <source>Schreiben, Reime, Sicherungen und Ordner</source>
        <translation>Writing, rhymes, backups and folders</translation>
    </message>
    <message>
        <source>Schreiben</source>
        <translation>Writing</translation>
    </message>
    <message>
        <source>Schrift im Editor</source>
        <translation>Editor font</translation>
    </message>
    <message>
        <source>Neue Texte, DOCX-Importe und Exporte verwenden diese Schrift. Bestehende Formatierungen bleiben erhalten, bis du sie änderst.</source>
        <translation>New texts, DOCX imports and exports use this font. Existing formatting stays until you change it.</translation>
    </message>
    <message>
        <source>Autor im Abschluss</source>
        <translation>Author in closing line</translation>
    </message>
    <message>
        <source>Ort im Abschluss</source>
        <translation>Place in closing line</translation>
    </message>
    <message>
        <source>Der Standardabschluss fügt Copyright, Ort und das aktuelle Tagesdatum ans Gedichtende an.</source>
        <translation>The standard closing line adds copyright, place and today&apos;s date to the end of the poem.</translation>
    </message>
    <message>
        <source>Kategorien</source>
        <translation>Categories</translation>
    </message>
    <message>
        <source>Noch keine Kategorien festgelegt.</source>
        <translation>No categories set yet.</translation>
    </message>
    <message>
        <source>Neue Kategorie</source>
        <translation>New category</translation>
    </message>
    <message>
        <source>Hinzufügen</source>
        <translation>Add</translation>
    </message>
    <message>
        <source>Diese Kategorien stehen beim Bearbeiten eines Gedichts zur Auswahl. Kategorien aus importierten Gedichten werden automatisch ergänzt.</source>
        <translation>These categories are offered when you edit a poem. Categories of imported poems are added automatically.</translation>
    </message>
    <message>
        <source>Umbenennen</source>
        <translation>Rename</translation>
    </message>
    <message>
        <source>Kategorie entfernen</source>
        <translation>Remove Category</translation>
    </message>
    <message>
        <source>„%1“ wird aus der Liste entfernt und bei einem Gedicht gelöscht. Das Gedicht selbst bleibt erhalten.</source>
        <translation>“%1” is removed from the list and from one poem. The poem itself stays.</translation>
    </message>
    <message>
        <source>„%1“ wird aus der Liste entfernt und bei %2 Gedichten gelöscht. Die Gedichte selbst bleiben erhalten.</source>
        <translation>“%1” is removed from the list and from %2 poems. The poems themselves stay.</translation>
    </message>
    <message>
        <source>Kategorie entfernen?</source>
        <translation>Remove category?</translation>
    </message>
    <message>
        <source>Abbrechen</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>Reime</source>
        <translation>Rhymes</translation>
    </message>
    <message>
        <source>Reimseite</source>
        <translation>Rhyme website</translation>
    </message>
    <message>
        <source>Der normale Klick auf „Reime…“ nutzt diesen Dienst. Die anderen bleiben im Menü erreichbar.</source>
        <translation>A plain click on “Rhymes…” uses this service. The others stay available in the menu.</translation>
    </message>
    <message>
        <source>Sicherung</source>
        <translation>Backup</translation>
    </message>
    <message>
        <source>Automatisches Tagesbackup</source>
        <translation>Automatic daily backup</translation>
    </message>
    <message>
        <source>OdeLeaf erstellt beim ersten App-Start pro Tag ein internes Sicherheitsbackup.</source>
        <translation>OdeLeaf makes an internal safety backup at the first start of the app each day.</translation>
    </message>
    <message>
        <source>Ordner</source>
        <translation>Folders</translation>
    </message>
    <message>
        <source>Ordner auswählen</source>
        <translation>Choose Folder</translation>
    </message>
    <message>
        <source>Zurücksetzen</source>
        <translation>Reset</translation>
    </message>
    <message>
        <source>Kein Ordner festgelegt</source>
        <translation>No folder set</translation>
    </message>
    <message>
        <source>Aktualisierungen</source>
        <translation>Updates</translation>
    </message>
    <message>
        <source>Automatisch nach Updates suchen</source>
        <translation>Check for updates automatically</translation>
    </message>
    <message>
        <source>Jetzt nach Updates suchen</source>
        <translation>Check for Updates Now</translation>
    </message>
    <message>
        <source>Diese Ausgabe von OdeLeaf erhält neue Versionen über die Paketverwaltung deines Systems; sie sucht nicht selbst nach Updates.</source>
        <translation>This edition of OdeLeaf gets new versions through your system&apos;s package manager; it does not check for updates itself.</translation>
    </message>
    <message>
        <source>OdeLeaf sucht höchstens einmal täglich automatisch nach neuen Versionen.</source>
        <translation>OdeLeaf checks for new versions automatically at most once a day.</translation>
    </message>
    <message>
        <source>Letzte Prüfung: %1</source>
        <translation>Last check: %1</translation>
    </message>
    <message>
        <source>Sprache</source>
        <translation>Language</translation>
    </message>
    <message>
        <source>App-Sprache</source>
        <translation>App language</translation>
    </message>
    <message>
        <source>OdeLeaf kann die Systemsprache verwenden oder fest auf Deutsch bzw. Englisch gestellt werden.</source>
        <translation>OdeLeaf can use the system language or be set to German or English.</translation>
    </message>
    <message>
        <source>Die Änderung wird nach einem Neustart von OdeLeaf vollständig aktiv.</source>
        <translation>The change takes full effect after OdeLeaf is restarted.</translation>
    </message>
    <message>
        <source>Datenschutzhinweis</source>
        <translation>Privacy notice</translation>
    </message>
    <message>
        <source>Details anzeigen</source>
        <translation>Show Details</translation>
    </message>
    <message>
        <source>Was OdeLeaf speichert und was es über das Netz sendet.</source>
        <translation>What OdeLeaf stores and what it sends over the network.</translation>
    </message>
    <message>
        <source>Kategorie hinzufügen</source>
        <translation>Add Category</translation>
    </message>
    <message>
        <source>Kategorie umbenennen</source>
        <translation>Rename Category</translation>
    </message>
    <message>
        <source>Fassungen belegen %1.</source>
        <translation>Versions take up %1.</translation>
    </message>
    <message>
        <source>Alte Fassungen aufräumen</source>
        <translation>Clean Up Old Versions</translation>
    </message>
    <message numerus="yes">
        <source>%n alte Fassungen entfernt.</source>
        <translation>
            <numerusform>%n old version removed.</numerusform>
            <numerusform>%n old versions removed.</numerusform>
        </translation>
    </message>
    <message>
        <source>Benannte Fassungen bleiben immer; sonst alle der letzten 30 Tage, dann eine pro Tag für ein Jahr, danach eine pro Monat.</source>
        <translation>Named versions are kept forever; otherwise all of the last 30 days, then one a day for a year, then one a month.</translation>
    </message>
</context>
<context>
    <name>SidebarScope</name>
    <message>
        <source>Archiv</source>
        <translation>Archive</translation>
    </message>
    <message>
        <source>Ohne Text</source>
        <translation>Without Text</translation>
    </message>
    <message>
        <source>Veröffentlicht</source>
        <translation>Published</translation>
    </message>
    <message>
        <source>Podcast</source>
        <translation>Podcast</translation>
    </message>
</context>
<context>
    <name>SinglePoemImport</name>
    <message>
        <source>Texte (*.docx *.pdf *.txt)</source>
        <translation>Texts (*.docx *.pdf *.txt)</translation>
    </message>
    <message>
        <source>Vorhandenen Gedichttext ersetzen?</source>
        <translation>Replace the poem’s existing text?</translation>
    </message>
    <message>
        <source>Keine normale Datei: %1</source>
        <translation>Not a regular file: %1</translation>
    </message>
    <message>
        <source>Die Datei „%1“ konnte nicht gelesen werden: %2</source>
        <translation>The file “%1” could not be read: %2</translation>
    </message>
    <message>
        <source>Die Datei „%1“ ist zu groß für ein Gedicht.</source>
        <translation>The file “%1” is too large for a poem.</translation>
    </message>
    <message>
        <source>Die Datei ist kein UTF-8 und wurde als Windows-1252 gelesen.</source>
        <translation>The file is not UTF-8 and was read as Windows-1252.</translation>
    </message>
    <message>
        <source>Text importiert aus %1. Rückgängig ist im Hauptfenster verfügbar.</source>
        <translation>Text imported from %1. You can undo it in the main window.</translation>
    </message>
</context>
<context>
    <name>SqliteDatabase</name>
    <message>
        <source>Nicht genug Speicherplatz: Die Datenbank oder der Datenträger ist voll</source>
        <translation>Not enough disk space: the database or the disk is full</translation>
    </message>
    <message>
        <source>Die Datenbank ist schreibgeschützt</source>
        <translation>The database is read-only</translation>
    </message>
    <message>
        <source>Die Datenbank wird gerade von einem anderen Programm benutzt</source>
        <translation>The database is in use by another program</translation>
    </message>
    <message>
        <source>Die Datenbankdatei ist beschädigt</source>
        <translation>The database file is damaged</translation>
    </message>
    <message>
        <source>Ein-/Ausgabefehler beim Zugriff auf die Datenbank</source>
        <translation>Input/output error while accessing the database</translation>
    </message>
    <message>
        <source>Die Datenbankdatei kann nicht geöffnet werden</source>
        <translation>The database file cannot be opened</translation>
    </message>
</context>
<context>
    <name>StatisticsPdfWriter</name>
    <message>
        <source>PDF konnte nicht erstellt werden.</source>
        <translation>PDF could not be created.</translation>
    </message>
</context>
<context>
    <name>StatisticsReport</name>
    <message>
        <source>Alle Gedichte haben Text und Datum.</source>
        <translation>All poems have text and a date.</translation>
    </message>
    <message>
        <source>%1 ohne Text</source>
        <translation>%1 without text</translation>
    </message>
    <message>
        <source>%1 ohne Datum</source>
        <translation>%1 without date</translation>
    </message>
    <message>
        <source>Erstellt: %1</source>
        <translation>Created: %1</translation>
    </message>
    <message>
        <source>Gedichte gesamt: %1</source>
        <translation>Poems in total: %1</translation>
    </message>
    <message>
        <source>Mit Text: %1</source>
        <translation>With text: %1</translation>
    </message>
    <message>
        <source>Ohne Text: %1</source>
        <translation>Without text: %1</translation>
    </message>
    <message>
        <source>Mit Datum: %1</source>
        <translation>With date: %1</translation>
    </message>
    <message>
        <source>Ohne Datum: %1</source>
        <translation>Without date: %1</translation>
    </message>
    <message>
        <source>Veröffentlicht: %1</source>
        <translation>Published: %1</translation>
    </message>
    <message>
        <source>Nicht veröffentlicht: %1</source>
        <translation>Not published: %1</translation>
    </message>
    <message>
        <source>Im Podcast: %1</source>
        <translation>In the podcast: %1</translation>
    </message>
    <message>
        <source>Nicht im Podcast: %1</source>
        <translation>Not in the podcast: %1</translation>
    </message>
    <message>
        <source>Zuletzt geändert: %1</source>
        <translation>Last modified: %1</translation>
    </message>
    <message>
        <source>Kategorien</source>
        <translation>Categories</translation>
    </message>
    <message>
        <source>%1: %2 gesamt, %3 mit Text, %4 ohne Text, %5 ohne Datum</source>
        <translation>%1: %2 in total, %3 with text, %4 without text, %5 without date</translation>
    </message>
    <message>
        <source>OdeLeaf Statistik</source>
        <translation>OdeLeaf Statistics</translation>
    </message>
    <message>
        <source>Noch zu erledigen</source>
        <translation>Still to Do</translation>
    </message>
    <message>
        <source>Alles vollständig</source>
        <translation>Everything Complete</translation>
    </message>
    <message>
        <source>Statistik gespeichert: %1</source>
        <translation>Statistics saved: %1</translation>
    </message>
    <message>
        <source>Statistik konnte nicht gespeichert werden: %1</source>
        <translation>Statistics could not be saved: %1</translation>
    </message>
    <message>
        <source>Statistik-PDF gespeichert: %1</source>
        <translation>Statistics PDF saved: %1</translation>
    </message>
    <message>
        <source>Statistik-PDF konnte nicht gespeichert werden: %1</source>
        <translation>Statistics PDF could not be saved: %1</translation>
    </message>
</context>
<context>
    <name>StatisticsWindow</name>
    <message>
        <source>Statistik</source>
        <translation>Statistics</translation>
    </message>
    <message numerus="yes">
        <source>%n Gedichte im Archiv</source>
        <translation>
            <numerusform>%n poem in the archive</numerusform>
            <numerusform>%n poems in the archive</numerusform>
        </translation>
    </message>
    <message>
        <source>Stand: %1</source>
        <translation>As of %1</translation>
    </message>
    <message>
        <source>Zuletzt geändert: %1</source>
        <translation>Last modified: %1</translation>
    </message>
    <message>
        <source>Als JSON speichern…</source>
        <translation>Save as JSON…</translation>
    </message>
    <message>
        <source>Als PDF speichern…</source>
        <translation>Save as PDF…</translation>
    </message>
    <message>
        <source>Mit Text</source>
        <translation>With Text</translation>
    </message>
    <message>
        <source>Ohne Text</source>
        <translation>Without Text</translation>
    </message>
    <message>
        <source>Mit Datum</source>
        <translation>With Date</translation>
    </message>
    <message>
        <source>Ohne Datum</source>
        <translation>Without Date</translation>
    </message>
    <message>
        <source>Veröffentlicht</source>
        <translation>Published</translation>
    </message>
    <message>
        <source>Im Podcast</source>
        <translation>In the Podcast</translation>
    </message>
    <message>
        <source>Nicht veröffentlicht: %1 · Nicht im Podcast: %2</source>
        <translation>Not published: %1 · Not in the podcast: %2</translation>
    </message>
    <message>
        <source>Kategorien</source>
        <translation>Categories</translation>
    </message>
    <message>
        <source>Kategorie</source>
        <translation>Category</translation>
    </message>
    <message>
        <source>Gesamt</source>
        <translation>Total</translation>
    </message>
    <message>
        <source>Statistik als JSON speichern</source>
        <translation>Save Statistics as JSON</translation>
    </message>
    <message>
        <source>JSON-Dateien (*.json)</source>
        <translation>JSON Files (*.json)</translation>
    </message>
    <message>
        <source>Statistik als PDF speichern</source>
        <translation>Save Statistics as PDF</translation>
    </message>
    <message>
        <source>PDF-Dateien (*.pdf)</source>
        <translation>PDF Files (*.pdf)</translation>
    </message>
    <message numerus="yes">
        <source>%n Gedicht im Archiv</source>
        <translation>
            <numerusform>%n poem in the archive</numerusform>
            <numerusform>%n poems in the archive</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>StatusPanel</name>
    <message>
        <source>Im Dateimanager zeigen</source>
        <translation>Show in File Manager</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>Keine aktuellen Meldungen.</source>
        <translation>No recent messages.</translation>
    </message>
    <message>
        <source>Ganze Meldung…</source>
        <translation>Whole Message…</translation>
    </message>
</context>
<context>
    <name>StoredPicture</name>
    <message>
        <source>zu groß</source>
        <translation>too large</translation>
    </message>
</context>
<context>
    <name>TextColorOption</name>
    <message>
        <source>Standard</source>
        <translation>Standard</translation>
    </message>
    <message>
        <source>Gold</source>
        <translation>Gold</translation>
    </message>
    <message>
        <source>Grau</source>
        <translation>Gray</translation>
    </message>
    <message>
        <source>Rot</source>
        <translation>Red</translation>
    </message>
    <message>
        <source>Blau</source>
        <translation>Blue</translation>
    </message>
    <message>
        <source>Grün</source>
        <translation>Green</translation>
    </message>
</context>
<context>
    <name>TextFileReader</name>
    <message>
        <source>„%1“ war nicht UTF-8-kodiert und wurde als Windows-1252 gelesen.</source>
        <translation>“%1” was not UTF-8 encoded and was read as Windows-1252.</translation>
    </message>
</context>
<context>
    <name>TextFinder</name>
    <message>
        <source>Kein Suchbegriff</source>
        <translation>No search term</translation>
    </message>
    <message>
        <source>Nicht gefunden</source>
        <translation>Not found</translation>
    </message>
    <message>
        <source>Ersetzt</source>
        <translation>Replaced</translation>
    </message>
    <message>
        <source>1 Treffer ersetzt</source>
        <translation>1 match replaced</translation>
    </message>
    <message>
        <source>%1 Treffer ersetzt</source>
        <translation>%1 matches replaced</translation>
    </message>
</context>
<context>
    <name>Trash</name>
    <message>
        <source>Gedicht wiederhergestellt: %1</source>
        <translation>Poem restored: %1</translation>
    </message>
    <message>
        <source>Gedicht endgültig gelöscht: %1</source>
        <translation>Poem permanently deleted: %1</translation>
    </message>
    <message>
        <source>(ohne Titel)</source>
        <translation>(untitled)</translation>
    </message>
    <message>
        <source>Papierkorb geleert: %1 Gedicht endgültig gelöscht.</source>
        <translation>Trash emptied: %1 poem permanently deleted.</translation>
    </message>
    <message>
        <source>Papierkorb geleert: %1 Gedichte endgültig gelöscht.</source>
        <translation>Trash emptied: %1 poems permanently deleted.</translation>
    </message>
    <message>
        <source>Papierkorb-Aktion fehlgeschlagen: %1</source>
        <translation>Trash action failed: %1</translation>
    </message>
</context>
<context>
    <name>TrashDialog</name>
    <message>
        <source>dd.MM.yyyy, HH:mm</source>
        <translation>MM/dd/yyyy, h:mm AP</translation>
    </message>
    <message>
        <source>%1 gelöschtes Gedicht</source>
        <translation>%1 deleted poem</translation>
    </message>
    <message>
        <source>%1 gelöschte Gedichte</source>
        <translation>%1 deleted poems</translation>
    </message>
    <message>
        <source>Papierkorb leeren…</source>
        <translation>Empty Trash…</translation>
    </message>
    <message>
        <source>Papierkorb</source>
        <translation>Trash</translation>
    </message>
    <message>
        <source>Gelöschte Gedichte bleiben hier erhalten, bis du sie endgültig entfernst.</source>
        <translation>Deleted poems stay here until you remove them permanently.</translation>
    </message>
    <message>
        <source>Du kannst einzelne Gedichte wiederherstellen oder dauerhaft löschen.</source>
        <translation>You can restore individual poems or delete them permanently.</translation>
    </message>
    <message>
        <source>Papierkorb ist leer</source>
        <translation>Trash Is Empty</translation>
    </message>
    <message>
        <source>Gelöschte Gedichte erscheinen hier und können später wiederhergestellt werden.</source>
        <translation>Deleted poems appear here and can be restored later.</translation>
    </message>
    <message>
        <source>Gelöscht am %1</source>
        <translation>Deleted on %1</translation>
    </message>
    <message>
        <source>Wiederherstellen</source>
        <translation>Restore</translation>
    </message>
    <message>
        <source>Endgültig löschen</source>
        <translation>Delete Permanently</translation>
    </message>
    <message>
        <source>Gedicht endgültig löschen?</source>
        <translation>Delete Poem Permanently?</translation>
    </message>
    <message>
        <source>„%1“ wird dauerhaft gelöscht und kann nicht über den Papierkorb wiederhergestellt werden.</source>
        <translation>“%1” will be deleted permanently and cannot be restored from the Trash.</translation>
    </message>
    <message>
        <source>%1 gelöschtes Gedicht wird dauerhaft entfernt.</source>
        <translation>%1 deleted poem will be removed permanently.</translation>
    </message>
    <message>
        <source>%1 gelöschte Gedichte werden dauerhaft entfernt.</source>
        <translation>%1 deleted poems will be removed permanently.</translation>
    </message>
    <message>
        <source>Papierkorb leeren?</source>
        <translation>Empty Trash?</translation>
    </message>
    <message>
        <source>Papierkorb endgültig leeren</source>
        <translation>Empty Trash Permanently</translation>
    </message>
    <message>
        <source>Abbrechen</source>
        <translation>Cancel</translation>
    </message>
</context>
<context>
    <name>UpdateFeed</name>
    <message>
        <source>Der Update-Feed ist fehlerhaft: %1</source>
        <translation>The update feed is malformed: %1</translation>
    </message>
    <message>
        <source>Der Update-Feed nennt keine Version.</source>
        <translation>The update feed does not name a version.</translation>
    </message>
</context>
<context>
    <name>UpdateManager</name>
    <message>
        <source>Der Update-Feed ist zu groß.</source>
        <translation>The update feed is too large.</translation>
    </message>
</context>
<context>
    <name>UpdatePresenter</name>
    <message>
        <source>Nach Updates suchen</source>
        <translation>Check for Updates</translation>
    </message>
    <message>
        <source>OdeLeaf %1 ist verfügbar.</source>
        <translation>OdeLeaf %1 is available.</translation>
    </message>
    <message>
        <source>Du verwendest Version %1.</source>
        <translation>You are using version %1.</translation>
    </message>
    <message>
        <source>Herunterladen</source>
        <translation>Download</translation>
    </message>
    <message>
        <source>Später</source>
        <translation>Later</translation>
    </message>
    <message>
        <source>OdeLeaf ist auf dem neuesten Stand. Version %1 ist die aktuelle Version.</source>
        <translation>OdeLeaf is up to date. Version %1 is the current version.</translation>
    </message>
    <message>
        <source>Die Suche nach Updates ist fehlgeschlagen: %1</source>
        <translation>Checking for updates failed: %1</translation>
    </message>
</context>
<context>
    <name>VerseAnalysis</name>
    <message>
        <source>freie Rhythmen</source>
        <translation>free verse</translation>
    </message>
    <message numerus="yes">
        <source>%n-hebiger Jambus</source>
        <translation>
            <numerusform>iambic, %n foot</numerusform>
            <numerusform>iambic, %n feet</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n-hebiger Trochäus</source>
        <translation>
            <numerusform>trochaic, %n foot</numerusform>
            <numerusform>trochaic, %n feet</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n-hebiger Daktylus</source>
        <translation>
            <numerusform>dactylic, %n foot</numerusform>
            <numerusform>dactylic, %n feet</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n-hebiger Anapäst</source>
        <translation>
            <numerusform>anapaestic, %n foot</numerusform>
            <numerusform>anapaestic, %n feet</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n-hebiger Amphibrachys</source>
        <translation>
            <numerusform>amphibrachic, %n foot</numerusform>
            <numerusform>amphibrachic, %n feet</numerusform>
        </translation>
    </message>
    <message>
        <source>1 Vers weicht ab</source>
        <translation>1 line breaks it</translation>
    </message>
    <message numerus="yes">
        <source>%n Verse weichen ab</source>
        <translation>
            <numerusform>%n line breaks it</numerusform>
            <numerusform>%n lines break it</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>WriterImageSize</name>
    <message>
        <source>Klein</source>
        <translation>Small</translation>
    </message>
    <message>
        <source>Mittel</source>
        <translation>Medium</translation>
    </message>
    <message>
        <source>Seitenbreite</source>
        <translation>Page Width</translation>
    </message>
</context>
<context>
    <name>WritingStatsBar</name>
    <message>
        <source>Wörter</source>
        <translation>Words</translation>
    </message>
    <message>
        <source>Zeichen</source>
        <translation>Characters</translation>
    </message>
    <message>
        <source>Zeilen</source>
        <translation>Lines</translation>
    </message>
    <message>
        <source>Strophen</source>
        <translation>Stanzas</translation>
    </message>
    <message>
        <source>%1. Klicken markiert die abweichenden Verse.</source>
        <translation>%1. Click to mark the lines that break the metre.</translation>
    </message>
</context>
</TS>
