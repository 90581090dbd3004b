#!/usr/bin/env bash
# Rebuilds the DOCX and PDF test documents with LibreOffice. The *.source.txt files use CRLF
# line ends on purpose; *.expected.txt hold the text the import must make of them.
set -euo pipefail
cd "$(dirname "$0")"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
text_filter="Text (encoded):UTF8,CRLF,,,"
for source in *.source.txt; do
  name=${source%.source.txt}
  cp "$source" "$work/$name.txt"
  soffice --headless --infilter="$text_filter" --convert-to docx:"MS Word 2007 XML" --outdir "$work" "$work/$name.txt"
  soffice --headless --infilter="$text_filter" --convert-to pdf:writer_pdf_Export --outdir "$work" "$work/$name.txt"
  cp "$work/$name.docx" "$work/$name.pdf" .
done
soffice --headless --infilter="HTML (StarWriter)" --convert-to docx:"MS Word 2007 XML" Mondnacht.html
soffice --headless --infilter="HTML (StarWriter)" --convert-to docx:"MS Word 2007 XML" Nur-Bild.html
soffice --headless --infilter="HTML (StarWriter)" --convert-to pdf:writer_pdf_Export Nur-Bild.html
# Bombe.docx (a part inflating to 100 MB) and Entitaeten.docx (nested entity definitions)
# were written with Python's zipfile; see the tests that use them.
