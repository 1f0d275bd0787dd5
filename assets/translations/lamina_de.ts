<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" sourcelanguage="en" language="de">
<context>
    <name>Lamina</name>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>%1 It goes on as soon as the camera is back.</source>
        <translation>%1 Es geht weiter, sobald die Kamera wieder da ist.</translation>
    </message>
    <message>
        <source>%1 Perhaps something else is using it. Close that, and try again.</source>
        <translation>%1 Vielleicht wird sie gerade anderswo benutzt. Schließen Sie das und versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>%1 changed</source>
        <translation>%1 geändert</translation>
    </message>
    <message>
        <source>%1 chosen</source>
        <translation>%1 gewählt</translation>
    </message>
    <message>
        <source>%1 degrees hue</source>
        <translation>%1 Grad Farbton</translation>
    </message>
    <message>
        <source>%1 in the file</source>
        <translation>%1 in der Datei</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <source>%1 on both photos</source>
        <translation>%1 auf beiden Fotos</translation>
    </message>
    <message>
        <source>%1 on photo %2</source>
        <translation>%1 auf Foto %2</translation>
    </message>
    <message>
        <source>%1 photos</source>
        <translation>%1 Fotos</translation>
    </message>
    <message>
        <source>%1 × %2 cm, %3 ppi</source>
        <translation>%1 × %2 cm, %3 ppi</translation>
    </message>
    <message>
        <source>%1 × %2 pixels</source>
        <translation>%1 × %2 Pixel</translation>
    </message>
    <message>
        <source>%1% saturation, %2% brightness</source>
        <translation>%1 % Sättigung, %2 % Helligkeit</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1, %2</translation>
    </message>
    <message>
        <source>%1, %2, chosen</source>
        <translation>%1, %2, gewählt</translation>
    </message>
    <message>
        <source>%1: %2.</source>
        <translation>%1: %2.</translation>
    </message>
    <message>
        <source>%1° hue, %2 % saturation, %3 % brightness</source>
        <translation>%1° Farbton, %2 % Sättigung, %3 % Helligkeit</translation>
    </message>
    <message>
        <source>%1×</source>
        <translation>%1×</translation>
    </message>
    <message>
        <source>1 photo</source>
        <translation>1 Foto</translation>
    </message>
    <message>
        <source>300 pixels per inch</source>
        <translation>300 Pixel pro Zoll</translation>
    </message>
    <message>
        <source>A collage in ten frames</source>
        <translation>Eine Collage in zehn Rahmen</translation>
    </message>
    <message>
        <source>A page up or down</source>
        <translation>Eine Seite hinauf oder hinab</translation>
    </message>
    <message>
        <source>About Lamina</source>
        <translation>Über Lamina</translation>
    </message>
    <message>
        <source>About and licence</source>
        <translation>Über Lamina und Lizenz</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>Add a folder…</source>
        <translation>Ordner hinzufügen …</translation>
    </message>
    <message>
        <source>Albums</source>
        <translation>Alben</translation>
    </message>
    <message>
        <source>All Photos</source>
        <translation>Alle Fotos</translation>
    </message>
    <message>
        <source>All files</source>
        <translation>Alle Dateien</translation>
    </message>
    <message>
        <source>Allow camera access?</source>
        <translation>Zugriff auf die Kamera erlauben?</translation>
    </message>
    <message>
        <source>Allow photo album access?</source>
        <translation>Zugriff auf die Fotoalben erlauben?</translation>
    </message>
    <message>
        <source>Animals</source>
        <translation>Tiere</translation>
    </message>
    <message>
        <source>Another app on this computer</source>
        <translation>Eine andere App auf diesem Gerät</translation>
    </message>
    <message>
        <source>Another filter</source>
        <translation>Anderer Filter</translation>
    </message>
    <message>
        <source>Another place</source>
        <translation>Anderer Ort</translation>
    </message>
    <message>
        <source>Another place…</source>
        <translation>Anderer Ort …</translation>
    </message>
    <message>
        <source>Another row or answer</source>
        <translation>Andere Zeile oder Antwort</translation>
    </message>
    <message>
        <source>Arrow keys move it, plus and minus zoom</source>
        <translation>Pfeiltasten verschieben es, Plus und Minus zoomen</translation>
    </message>
    <message>
        <source>Arrow keys move the photo, plus and minus zoom it, comma and period turn it, digits choose another one</source>
        <translation>Pfeiltasten bewegen das Foto, Plus und Minus zoomen, Komma und Punkt drehen es, Ziffern wählen ein anderes</translation>
    </message>
    <message>
        <source>Arrow keys move the second photo, plus and minus zoom it</source>
        <translation>Pfeiltasten verschieben das zweite Foto, Plus und Minus zoomen es</translation>
    </message>
    <message>
        <source>Arrow keys move the sticker, plus and minus scale it, comma and period turn it, Delete removes it</source>
        <translation>Pfeiltasten verschieben den Sticker, Plus und Minus skalieren ihn, Komma und Punkt drehen ihn, Entf entfernt ihn</translation>
    </message>
    <message>
        <source>As an attachment</source>
        <translation>Als Anhang</translation>
    </message>
    <message>
        <source>Avocado</source>
        <translation>Avocado</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Balloon</source>
        <translation>Ballon</translation>
    </message>
    <message>
        <source>Banner</source>
        <translation>Banner</translation>
    </message>
    <message>
        <source>Bear</source>
        <translation>Bär</translation>
    </message>
    <message>
        <source>Bee</source>
        <translation>Biene</translation>
    </message>
    <message>
        <source>Before</source>
        <translation>Vorher</translation>
    </message>
    <message>
        <source>Before. Tap to go back</source>
        <translation>Vorher. Tippen zum Zurücksetzen</translation>
    </message>
    <message>
        <source>Begin a blend?</source>
        <translation>Eine Überblendung beginnen?</translation>
    </message>
    <message>
        <source>Begin a collage?</source>
        <translation>Eine Collage beginnen?</translation>
    </message>
    <message>
        <source>Begin or end a clip</source>
        <translation>Video beginnen oder beenden</translation>
    </message>
    <message>
        <source>Below</source>
        <translation>Unten</translation>
    </message>
    <message>
        <source>Best for complex images, illustrations</source>
        <translation>Am besten für komplexe Bilder, Illustrationen</translation>
    </message>
    <message>
        <source>Best for document (and emailing)</source>
        <translation>Am besten für Dokumente (und E-Mails)</translation>
    </message>
    <message>
        <source>Best for printing</source>
        <translation>Am besten zum Drucken</translation>
    </message>
    <message>
        <source>Best for sharing</source>
        <translation>Am besten zum Teilen</translation>
    </message>
    <message>
        <source>Best for web design and animations</source>
        <translation>Am besten für Webdesign und Animationen</translation>
    </message>
    <message>
        <source>Blend</source>
        <translation>Überblenden</translation>
    </message>
    <message>
        <source>Boat</source>
        <translation>Boot</translation>
    </message>
    <message>
        <source>Border and gaps</source>
        <translation>Rand und Fugen</translation>
    </message>
    <message>
        <source>Border width</source>
        <translation>Rand</translation>
    </message>
    <message>
        <source>Bow</source>
        <translation>Schleife</translation>
    </message>
    <message>
        <source>Bring the photo back</source>
        <translation>Foto zurückholen</translation>
    </message>
    <message>
        <source>Brown</source>
        <translation>Braun</translation>
    </message>
    <message>
        <source>Bubble</source>
        <translation>Sprechblase</translation>
    </message>
    <message>
        <source>Bubbles</source>
        <translation>Seifenblasen</translation>
    </message>
    <message>
        <source>Bunny</source>
        <translation>Hase</translation>
    </message>
    <message>
        <source>Butterfly</source>
        <translation>Schmetterling</translation>
    </message>
    <message>
        <source>CMYK (best for professional printing)</source>
        <translation>CMYK (am besten für professionellen Druck)</translation>
    </message>
    <message>
        <source>Cactus</source>
        <translation>Kaktus</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>Kamera</translation>
    </message>
    <message>
        <source>Camera Unavailable</source>
        <translation>Kamera nicht verfügbar</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Canvas</source>
        <translation>Leinwand</translation>
    </message>
    <message>
        <source>Can’t ask for a place</source>
        <translation>Es kann nicht nach einem Ort gefragt werden</translation>
    </message>
    <message>
        <source>Can’t change the photo</source>
        <translation>Das Foto kann nicht geändert werden</translation>
    </message>
    <message>
        <source>Can’t copy</source>
        <translation>Kopieren nicht möglich</translation>
    </message>
    <message>
        <source>Can’t crop the photo</source>
        <translation>Das Foto lässt sich nicht zuschneiden</translation>
    </message>
    <message>
        <source>Can’t discard the work</source>
        <translation>Die Arbeit lässt sich nicht verwerfen</translation>
    </message>
    <message>
        <source>Can’t keep the folders</source>
        <translation>Die Ordner können nicht gespeichert werden</translation>
    </message>
    <message>
        <source>Can’t open a window</source>
        <translation>Ein Fenster lässt sich nicht öffnen</translation>
    </message>
    <message>
        <source>Can’t open the camera</source>
        <translation>Die Kamera lässt sich nicht öffnen</translation>
    </message>
    <message>
        <source>Can’t open the clip</source>
        <translation>Der Clip kann nicht geöffnet werden</translation>
    </message>
    <message>
        <source>Can’t open the file</source>
        <translation>Die Datei kann nicht geöffnet werden</translation>
    </message>
    <message>
        <source>Can’t open the movie</source>
        <translation>Der Film lässt sich nicht öffnen</translation>
    </message>
    <message>
        <source>Can’t open the page</source>
        <translation>Die Seite lässt sich nicht öffnen</translation>
    </message>
    <message>
        <source>Can’t open the photo</source>
        <translation>Das Foto lässt sich nicht öffnen</translation>
    </message>
    <message>
        <source>Can’t open the work</source>
        <translation>Die Arbeit lässt sich nicht öffnen</translation>
    </message>
    <message>
        <source>Can’t print</source>
        <translation>Drucken nicht möglich</translation>
    </message>
    <message>
        <source>Can’t save the copy</source>
        <translation>Die Kopie kann nicht gespeichert werden</translation>
    </message>
    <message>
        <source>Can’t save the photo</source>
        <translation>Das Foto kann nicht gespeichert werden</translation>
    </message>
    <message>
        <source>Can’t save the picture</source>
        <translation>Das Bild lässt sich nicht speichern</translation>
    </message>
    <message>
        <source>Can’t send the file</source>
        <translation>Die Datei kann nicht gesendet werden</translation>
    </message>
    <message>
        <source>Can’t share</source>
        <translation>Teilen nicht möglich</translation>
    </message>
    <message>
        <source>Can’t show the file</source>
        <translation>Die Datei kann nicht gezeigt werden</translation>
    </message>
    <message>
        <source>Can’t take the photo</source>
        <translation>Das Foto lässt sich nicht aufnehmen</translation>
    </message>
    <message>
        <source>Car</source>
        <translation>Auto</translation>
    </message>
    <message>
        <source>Cat</source>
        <translation>Katze</translation>
    </message>
    <message>
        <source>Chat</source>
        <translation>Chat</translation>
    </message>
    <message>
        <source>Cherry</source>
        <translation>Kirsche</translation>
    </message>
    <message>
        <source>Chick</source>
        <translation>Küken</translation>
    </message>
    <message>
        <source>Choose</source>
        <translation>Auswählen</translation>
    </message>
    <message>
        <source>Choose Move to drag the second photo and to zoom it.</source>
        <translation>„Bewegen“ wählen, um das zweite Foto zu ziehen und zu zoomen.</translation>
    </message>
    <message>
        <source>Choose a folder</source>
        <translation>Ordner wählen</translation>
    </message>
    <message>
        <source>Choose a movie</source>
        <translation>Film wählen</translation>
    </message>
    <message>
        <source>Choose a photo</source>
        <translation>Foto wählen</translation>
    </message>
    <message>
        <source>Choose a photo or leave it</source>
        <translation>Ein Foto wählen oder abwählen</translation>
    </message>
    <message>
        <source>Choose a place</source>
        <translation>Ort wählen</translation>
    </message>
    <message>
        <source>Choose a tool</source>
        <translation>Werkzeug wählen</translation>
    </message>
    <message>
        <source>Choose a tool of a collage</source>
        <translation>Werkzeug einer Collage wählen</translation>
    </message>
    <message>
        <source>Choose another movie</source>
        <translation>Anderen Film wählen</translation>
    </message>
    <message>
        <source>Choose photos</source>
        <translation>Fotos wählen</translation>
    </message>
    <message>
        <source>Choose photos…</source>
        <translation>Fotos wählen …</translation>
    </message>
    <message>
        <source>Choose this folder</source>
        <translation>Diesen Ordner wählen</translation>
    </message>
    <message>
        <source>Choosing photos</source>
        <translation>Fotos wählen</translation>
    </message>
    <message>
        <source>Chosen</source>
        <translation>Gewählt</translation>
    </message>
    <message>
        <source>Circle in a circle</source>
        <translation>Kreis im Kreis</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Klar</translation>
    </message>
    <message>
        <source>Clearness</source>
        <translation>Klarheit</translation>
    </message>
    <message>
        <source>Click on below icons to share PDF Document</source>
        <translation>Unten antippen, um das PDF-Dokument zu teilen</translation>
    </message>
    <message>
        <source>Click on below icons to share SVG</source>
        <translation>Unten antippen, um das SVG zu teilen</translation>
    </message>
    <message>
        <source>Clip</source>
        <translation>Video</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Close the window</source>
        <translation>Fenster schließen</translation>
    </message>
    <message>
        <source>Cloud</source>
        <translation>Wolke</translation>
    </message>
    <message>
        <source>Clover</source>
        <translation>Kleeblatt</translation>
    </message>
    <message>
        <source>Coffee</source>
        <translation>Kaffee</translation>
    </message>
    <message>
        <source>Collage</source>
        <translation>Collage</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>Farbe</translation>
    </message>
    <message>
        <source>Color in digits</source>
        <translation>Farbe in Ziffern</translation>
    </message>
    <message>
        <source>Color profile</source>
        <translation>Farbprofil</translation>
    </message>
    <message>
        <source>Comet</source>
        <translation>Komet</translation>
    </message>
    <message>
        <source>Comic</source>
        <translation>Comic</translation>
    </message>
    <message>
        <source>Compare</source>
        <translation>Vergleich</translation>
    </message>
    <message>
        <source>Compare with before</source>
        <translation>Mit vorher vergleichen</translation>
    </message>
    <message>
        <source>Compass</source>
        <translation>Kompass</translation>
    </message>
    <message>
        <source>Confetti</source>
        <translation>Konfetti</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Weiter</translation>
    </message>
    <message>
        <source>Copied.</source>
        <translation>Kopiert.</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Corners</source>
        <translation>Ecken</translation>
    </message>
    <message>
        <source>Crop again</source>
        <translation>Neu zuschneiden</translation>
    </message>
    <message>
        <source>Crop marks</source>
        <translation>Schnittmarken</translation>
    </message>
    <message>
        <source>Crown</source>
        <translation>Krone</translation>
    </message>
    <message>
        <source>Ctrl</source>
        <translation>Strg</translation>
    </message>
    <message>
        <source>Cupcake</source>
        <translation>Törtchen</translation>
    </message>
    <message>
        <source>Daisy</source>
        <translation>Gänseblümchen</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Entf</translation>
    </message>
    <message>
        <source>Delete sticker</source>
        <translation>Sticker löschen</translation>
    </message>
    <message>
        <source>Diagonal</source>
        <translation>Diagonale</translation>
    </message>
    <message>
        <source>Diamond</source>
        <translation>Diamant</translation>
    </message>
    <message>
        <source>Discard</source>
        <translation>Verwerfen</translation>
    </message>
    <message>
        <source>Discard Editing</source>
        <translation>Änderungen verwerfen</translation>
    </message>
    <message>
        <source>Discard this work?</source>
        <translation>Diese Arbeit verwerfen?</translation>
    </message>
    <message>
        <source>Dog</source>
        <translation>Hund</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>Donut</source>
        <translation>Donut</translation>
    </message>
    <message>
        <source>Drag the photo, pinch to zoom it, twist to turn it. A double tap fits it to its slot again. The button of a photo, dragged onto another one, swaps the two.</source>
        <translation>Foto ziehen, mit zwei Fingern zoomen und drehen. Doppeltippen passt es wieder ein. Die Taste eines Fotos, auf eine andere gezogen, tauscht die beiden.</translation>
    </message>
    <message>
        <source>Drag the photo, turn the wheel to zoom it, with Shift to turn it. A double click fits it to its slot again. The button of a photo, dragged onto another one, swaps the two.</source>
        <translation>Foto ziehen, mit dem Mausrad zoomen, mit Umschalt drehen. Ein Doppelklick passt es wieder ein. Die Taste eines Fotos, auf eine andere gezogen, tauscht die beiden.</translation>
    </message>
    <message>
        <source>Drag the second photo, pinch to zoom it. Arrow keys move it a little, plus and minus zoom.</source>
        <translation>Das zweite Foto ziehen; mit zwei Fingern zoomen. Pfeiltasten verschieben es ein wenig, Plus und Minus zoomen.</translation>
    </message>
    <message>
        <source>Drag the second photo, turn the wheel to zoom it. Arrow keys move it a little, plus and minus zoom.</source>
        <translation>Das zweite Foto ziehen; mit dem Mausrad zoomen. Pfeiltasten verschieben es ein wenig, Plus und Minus zoomen.</translation>
    </message>
    <message>
        <source>Drag to move, pinch to zoom</source>
        <translation>Ziehen verschiebt, zwei Finger zoomen</translation>
    </message>
    <message>
        <source>Drag to move, pinch to zoom, twist to turn</source>
        <translation>Ziehen bewegt, zwei Finger zoomen und drehen</translation>
    </message>
    <message>
        <source>Drag to move, turn the wheel to zoom</source>
        <translation>Ziehen verschiebt, das Mausrad zoomt</translation>
    </message>
    <message>
        <source>Drag to move, turn the wheel to zoom, with Shift to turn</source>
        <translation>Ziehen bewegt, das Rad zoomt, mit Umschalt dreht es</translation>
    </message>
    <message>
        <source>Dream</source>
        <translation>Traum</translation>
    </message>
    <message>
        <source>Drop</source>
        <translation>Tropfen</translation>
    </message>
    <message>
        <source>Effects</source>
        <translation>Effekte</translation>
    </message>
    <message>
        <source>Eight frames</source>
        <translation>Acht Rahmen</translation>
    </message>
    <message>
        <source>End</source>
        <translation>Ende</translation>
    </message>
    <message>
        <source>Ends the clip</source>
        <translation>Beendet das Video</translation>
    </message>
    <message>
        <source>Enter</source>
        <translation>Eingabe</translation>
    </message>
    <message>
        <source>Exotic</source>
        <translation>Exotisch</translation>
    </message>
    <message>
        <source>Feed</source>
        <translation>Feed</translation>
    </message>
    <message>
        <source>Feelings</source>
        <translation>Gefühle</translation>
    </message>
    <message>
        <source>File size: Large</source>
        <translation>Dateigröße: groß</translation>
    </message>
    <message>
        <source>File size: Medium</source>
        <translation>Dateigröße: mittel</translation>
    </message>
    <message>
        <source>File size: Small</source>
        <translation>Dateigröße: klein</translation>
    </message>
    <message>
        <source>File type</source>
        <translation>Dateityp</translation>
    </message>
    <message>
        <source>Film</source>
        <translation>Film</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>Firework</source>
        <translation>Feuerwerk</translation>
    </message>
    <message>
        <source>First and last</source>
        <translation>Anfang und Ende</translation>
    </message>
    <message>
        <source>First photo</source>
        <translation>Erstes Foto</translation>
    </message>
    <message>
        <source>Fish</source>
        <translation>Fisch</translation>
    </message>
    <message>
        <source>Flip H</source>
        <translation>Spiegeln H</translation>
    </message>
    <message>
        <source>Flip V</source>
        <translation>Spiegeln V</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>Food</source>
        <translation>Essen</translation>
    </message>
    <message>
        <source>Frames and ribbons</source>
        <translation>Rahmen und Bänder</translation>
    </message>
    <message>
        <source>Friends</source>
        <translation>Freunde</translation>
    </message>
    <message>
        <source>Frog</source>
        <translation>Frosch</translation>
    </message>
    <message>
        <source>Full screen</source>
        <translation>Vollbild</translation>
    </message>
    <message>
        <source>Gap</source>
        <translation>Fuge</translation>
    </message>
    <message>
        <source>Garland</source>
        <translation>Girlande</translation>
    </message>
    <message>
        <source>Gradient</source>
        <translation>Verlauf</translation>
    </message>
    <message>
        <source>Gray</source>
        <translation>Grau</translation>
    </message>
    <message>
        <source>HEIC pictures need lamina-decoder, which is not installed</source>
        <translation>HEIC-Bilder brauchen lamina-decoder, das nicht installiert ist</translation>
    </message>
    <message>
        <source>HEIC pictures need libheif</source>
        <translation>HEIC-Bilder brauchen libheif</translation>
    </message>
    <message>
        <source>Heart</source>
        <translation>Herz</translation>
    </message>
    <message>
        <source>Hide</source>
        <translation>Ausblenden</translation>
    </message>
    <message>
        <source>High</source>
        <translation>Hoch</translation>
    </message>
    <message>
        <source>High quality video</source>
        <translation>Video in hoher Qualität</translation>
    </message>
    <message>
        <source>Hold still</source>
        <translation>Stillhalten</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>Home key</source>
        <translation>Pos1</translation>
    </message>
    <message>
        <source>Hue</source>
        <translation>Farbton</translation>
    </message>
    <message>
        <source>Ice cream</source>
        <translation>Eis</translation>
    </message>
    <message>
        <source>Ink</source>
        <translation>Tusche</translation>
    </message>
    <message>
        <source>JPEG pictures with arithmetic coding are not supported</source>
        <translation>JPEG-Bilder mit arithmetischer Kodierung werden nicht unterstützt</translation>
    </message>
    <message>
        <source>JPG</source>
        <translation>JPG</translation>
    </message>
    <message>
        <source>Jump to a name</source>
        <translation>Zu einem Namen springen</translation>
    </message>
    <message>
        <source>Keep</source>
        <translation>Behalten</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>Tasten</translation>
    </message>
    <message>
        <source>Ladybird</source>
        <translation>Marienkäfer</translation>
    </message>
    <message>
        <source>Lamina</source>
        <translation>Lamina</translation>
    </message>
    <message>
        <source>Lamina blends two photos. %1 were left out.</source>
        <translation>Lamina überblendet zwei Fotos. %1 wurden weggelassen.</translation>
    </message>
    <message>
        <source>Lamina blends two photos. One was left out.</source>
        <translation>Lamina überblendet zwei Fotos. Eines wurde weggelassen.</translation>
    </message>
    <message>
        <source>Lamina may not use the camera</source>
        <translation>Lamina darf die Kamera nicht benutzen</translation>
    </message>
    <message>
        <source>Lamina puts photos together: it lays one over another, or several into a collage. Your photos stay on this device.</source>
        <translation>Lamina setzt Fotos zusammen: es legt eines über das andere oder mehrere in eine Collage. Ihre Fotos bleiben auf diesem Gerät.</translation>
    </message>
    <message>
        <source>Laugh</source>
        <translation>Lachen</translation>
    </message>
    <message>
        <source>Lay one photo over another</source>
        <translation>Ein Foto über ein anderes legen</translation>
    </message>
    <message>
        <source>Layout</source>
        <translation>Layout</translation>
    </message>
    <message>
        <source>Leaf</source>
        <translation>Blatt</translation>
    </message>
    <message>
        <source>Left</source>
        <translation>Links</translation>
    </message>
    <message>
        <source>Left and right choose another filter. Held down it shows the picture as it came.</source>
        <translation>Links und rechts wählen einen anderen Filter. Gedrückt gehalten zeigt es das Bild, wie es kam.</translation>
    </message>
    <message>
        <source>Left out besides: %1.</source>
        <translation>Außerdem ausgelassen: %1.</translation>
    </message>
    <message>
        <source>Lemon</source>
        <translation>Zitrone</translation>
    </message>
    <message>
        <source>Letter</source>
        <translation>Brief</translation>
    </message>
    <message>
        <source>Lighthouse</source>
        <translation>Leuchtturm</translation>
    </message>
    <message>
        <source>Line between before and now</source>
        <translation>Linie zwischen vorher und jetzt</translation>
    </message>
    <message>
        <source>Lines</source>
        <translation>Linien</translation>
    </message>
    <message>
        <source>Lists</source>
        <translation>Listen</translation>
    </message>
    <message>
        <source>Live filters</source>
        <translation>Live-Filter</translation>
    </message>
    <message>
        <source>Live picture</source>
        <translation>Live-Bild</translation>
    </message>
    <message>
        <source>Live pictures</source>
        <translation>Live-Bilder</translation>
    </message>
    <message>
        <source>Look at a photo</source>
        <translation>Ein Foto ansehen</translation>
    </message>
    <message>
        <source>Low</source>
        <translation>Niedrig</translation>
    </message>
    <message>
        <source>MP4 Video</source>
        <translation>MP4-Video</translation>
    </message>
    <message>
        <source>Mail</source>
        <translation>E-Mail</translation>
    </message>
    <message>
        <source>Medium</source>
        <translation>Mittel</translation>
    </message>
    <message>
        <source>Melon</source>
        <translation>Melone</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menü</translation>
    </message>
    <message>
        <source>Menu of a photo</source>
        <translation>Menü eines Fotos</translation>
    </message>
    <message>
        <source>Menu of photo %1</source>
        <translation>Menü von Foto %1</translation>
    </message>
    <message>
        <source>Moon</source>
        <translation>Mond</translation>
    </message>
    <message>
        <source>More</source>
        <translation>Mehr</translation>
    </message>
    <message>
        <source>Mountain</source>
        <translation>Berg</translation>
    </message>
    <message>
        <source>Move</source>
        <translation>Bewegen</translation>
    </message>
    <message>
        <source>Move it further</source>
        <translation>Weiter verschieben</translation>
    </message>
    <message>
        <source>Move the photo</source>
        <translation>Foto verschieben</translation>
    </message>
    <message>
        <source>Movie</source>
        <translation>Film</translation>
    </message>
    <message>
        <source>Movies</source>
        <translation>Filme</translation>
    </message>
    <message>
        <source>Mushroom</source>
        <translation>Pilz</translation>
    </message>
    <message>
        <source>NO</source>
        <translation>NEIN</translation>
    </message>
    <message>
        <source>Need your permission to access photo albumbs</source>
        <translation>Für die Fotoalben wird Ihre Erlaubnis gebraucht</translation>
    </message>
    <message>
        <source>Need your permission to take a photo</source>
        <translation>Zum Fotografieren wird Ihre Erlaubnis gebraucht</translation>
    </message>
    <message>
        <source>Next control</source>
        <translation>Nächstes Element</translation>
    </message>
    <message>
        <source>No camera</source>
        <translation>Keine Kamera</translation>
    </message>
    <message>
        <source>No longer there: %1</source>
        <translation>Nicht mehr da: %1</translation>
    </message>
    <message>
        <source>No movies in this folder</source>
        <translation>Keine Filme in diesem Ordner</translation>
    </message>
    <message>
        <source>No photos in this folder</source>
        <translation>Keine Fotos in diesem Ordner</translation>
    </message>
    <message>
        <source>No photos yet</source>
        <translation>Noch keine Fotos</translation>
    </message>
    <message>
        <source>None changed</source>
        <translation>Nichts geändert</translation>
    </message>
    <message>
        <source>Not available now</source>
        <translation>Jetzt nicht verfügbar</translation>
    </message>
    <message>
        <source>Not saved</source>
        <translation>Nicht gespeichert</translation>
    </message>
    <message>
        <source>Not saved in Photos</source>
        <translation>Nicht in Fotos gespeichert</translation>
    </message>
    <message>
        <source>Not saved yet</source>
        <translation>Noch nicht gespeichert</translation>
    </message>
    <message>
        <source>Note line</source>
        <translation>Notizzeile</translation>
    </message>
    <message>
        <source>Now</source>
        <translation>Jetzt</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>On paper</source>
        <translation>Auf Papier</translation>
    </message>
    <message>
        <source>On top</source>
        <translation>Oben</translation>
    </message>
    <message>
        <source>On top, moves</source>
        <translation>Oben, beweglich</translation>
    </message>
    <message>
        <source>One above the other</source>
        <translation>Übereinander</translation>
    </message>
    <message>
        <source>One above two</source>
        <translation>Eins über zweien</translation>
    </message>
    <message>
        <source>One beside two</source>
        <translation>Eins neben zweien</translation>
    </message>
    <message>
        <source>One cut, eight frames</source>
        <translation>Ein Schnitt, acht Rahmen</translation>
    </message>
    <message>
        <source>One photo shines through the other</source>
        <translation>Ein Foto scheint durch das andere</translation>
    </message>
    <message>
        <source>One step back</source>
        <translation>Einen Schritt zurück</translation>
    </message>
    <message>
        <source>Only the first %1 of %2 are shown.</source>
        <translation>Nur die ersten %1 von %2 sind zu sehen.</translation>
    </message>
    <message>
        <source>Oops</source>
        <translation>Hoppla</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Open a new window</source>
        <translation>Neues Fenster öffnen</translation>
    </message>
    <message>
        <source>Open a photo</source>
        <translation>Foto öffnen</translation>
    </message>
    <message>
        <source>Open the photo?</source>
        <translation>Das Foto öffnen?</translation>
    </message>
    <message>
        <source>Open the photos?</source>
        <translation>Die Fotos öffnen?</translation>
    </message>
    <message>
        <source>Open with</source>
        <translation>Öffnen mit</translation>
    </message>
    <message>
        <source>Opening %1</source>
        <translation>%1 wird geöffnet</translation>
    </message>
    <message>
        <source>Opens %1 in the browser</source>
        <translation>Öffnet %1 im Browser</translation>
    </message>
    <message>
        <source>Opens the list of what can be done with the file</source>
        <translation>Öffnet die Liste dessen, was mit der Datei getan werden kann</translation>
    </message>
    <message>
        <source>Original</source>
        <translation>Original</translation>
    </message>
    <message>
        <source>Other camera</source>
        <translation>Andere Kamera</translation>
    </message>
    <message>
        <source>PDF Print</source>
        <translation>PDF für Druck</translation>
    </message>
    <message>
        <source>PDF Standard</source>
        <translation>PDF Standard</translation>
    </message>
    <message>
        <source>PNG</source>
        <translation>PNG</translation>
    </message>
    <message>
        <source>Palm</source>
        <translation>Palme</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>Einfügen</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>Pause or go on</source>
        <translation>Anhalten oder weiter</translation>
    </message>
    <message>
        <source>Penguin</source>
        <translation>Pinguin</translation>
    </message>
    <message>
        <source>PgDn</source>
        <translation>Bild ↓</translation>
    </message>
    <message>
        <source>PgUp</source>
        <translation>Bild ↑</translation>
    </message>
    <message>
        <source>Photo %1</source>
        <translation>Foto %1</translation>
    </message>
    <message>
        <source>Photo %1 of %2 is in hand.</source>
        <translation>Foto %1 von %2 ist gewählt.</translation>
    </message>
    <message>
        <source>Photo %1 of 2</source>
        <translation>Foto %1 von 2</translation>
    </message>
    <message>
        <source>Photo 1</source>
        <translation>Foto 1</translation>
    </message>
    <message>
        <source>Photo 1 is not movable.</source>
        <translation>Foto 1 lässt sich nicht bewegen.</translation>
    </message>
    <message>
        <source>Photo 1 lies over photo 2.</source>
        <translation>Foto 1 liegt über Foto 2.</translation>
    </message>
    <message>
        <source>Photo 2</source>
        <translation>Foto 2</translation>
    </message>
    <message>
        <source>Photo 2 lies over photo 1.</source>
        <translation>Foto 2 liegt über Foto 1.</translation>
    </message>
    <message>
        <source>Photo behind the crop square</source>
        <translation>Foto hinter dem Ausschnitt</translation>
    </message>
    <message>
        <source>Photo folders</source>
        <translation>Fotoordner</translation>
    </message>
    <message>
        <source>Photo folders…</source>
        <translation>Fotoordner …</translation>
    </message>
    <message>
        <source>Photo library</source>
        <translation>Fotosammlung</translation>
    </message>
    <message>
        <source>Photo of a collage</source>
        <translation>Foto einer Collage</translation>
    </message>
    <message>
        <source>Photo, %1</source>
        <translation>Foto, %1</translation>
    </message>
    <message>
        <source>Photo, %1, chosen, number %2</source>
        <translation>Foto, %1, gewählt, Nummer %2</translation>
    </message>
    <message>
        <source>Photos</source>
        <translation>Fotos</translation>
    </message>
    <message>
        <source>Photos are looked for in %1</source>
        <translation>Fotos werden in %1 gesucht</translation>
    </message>
    <message>
        <source>Photos back</source>
        <translation>Fotos zurück</translation>
    </message>
    <message>
        <source>Pictures</source>
        <translation>Bilder</translation>
    </message>
    <message>
        <source>Pine</source>
        <translation>Tanne</translation>
    </message>
    <message>
        <source>PipeWire isn’t running</source>
        <translation>PipeWire läuft nicht</translation>
    </message>
    <message>
        <source>Pizza</source>
        <translation>Pizza</translation>
    </message>
    <message>
        <source>Place in the movie</source>
        <translation>Stelle im Film</translation>
    </message>
    <message>
        <source>Plants</source>
        <translation>Pflanzen</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Abspielen</translation>
    </message>
    <message>
        <source>Please Wait...</source>
        <translation>Bitte warten …</translation>
    </message>
    <message>
        <source>Please select 2 photos</source>
        <translation>Bitte wählen Sie 2 Fotos</translation>
    </message>
    <message>
        <source>Please select 3 photos</source>
        <translation>Bitte wählen Sie 3 Fotos</translation>
    </message>
    <message>
        <source>Plug one in, and it goes on here.</source>
        <translation>Schließen Sie eine an, dann geht es hier weiter.</translation>
    </message>
    <message>
        <source>Plum</source>
        <translation>Pflaume</translation>
    </message>
    <message>
        <source>Poster</source>
        <translation>Plakat</translation>
    </message>
    <message>
        <source>Print</source>
        <translation>Drucken</translation>
    </message>
    <message>
        <source>Put photos together.</source>
        <translation>Fotos zusammenfügen.</translation>
    </message>
    <message>
        <source>Quality</source>
        <translation>Qualität</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>RGB (best for digital use)</source>
        <translation>RGB (am besten für digitale Nutzung)</translation>
    </message>
    <message>
        <source>Rainbow</source>
        <translation>Regenbogen</translation>
    </message>
    <message>
        <source>Recommended</source>
        <translation>Empfohlen</translation>
    </message>
    <message>
        <source>Recommended: opens %1 in the browser</source>
        <translation>Empfohlen: öffnet %1 im Browser</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Wiederholen</translation>
    </message>
    <message>
        <source>Relief</source>
        <translation>Relief</translation>
    </message>
    <message>
        <source>Remove a sticker</source>
        <translation>Sticker entfernen</translation>
    </message>
    <message>
        <source>Reopen</source>
        <translation>Wieder öffnen</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>Ersetzen</translation>
    </message>
    <message>
        <source>Report a fault</source>
        <translation>Fehler melden</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Rücksetzen</translation>
    </message>
    <message>
        <source>Resize sticker</source>
        <translation>Stickergröße ändern</translation>
    </message>
    <message>
        <source>Retake</source>
        <translation>Noch einmal</translation>
    </message>
    <message>
        <source>Rice</source>
        <translation>Reis</translation>
    </message>
    <message>
        <source>Right</source>
        <translation>Rechts</translation>
    </message>
    <message>
        <source>Rocket</source>
        <translation>Rakete</translation>
    </message>
    <message>
        <source>Rosette</source>
        <translation>Rosette</translation>
    </message>
    <message>
        <source>Round frame</source>
        <translation>Runder Rahmen</translation>
    </message>
    <message>
        <source>SVG</source>
        <translation>SVG</translation>
    </message>
    <message>
        <source>Samples</source>
        <translation>Beispiele</translation>
    </message>
    <message>
        <source>Saturation and brightness</source>
        <translation>Sättigung und Helligkeit</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Sichern</translation>
    </message>
    <message>
        <source>Save %1</source>
        <translation>%1 sichern</translation>
    </message>
    <message>
        <source>Save a copy</source>
        <translation>Kopie sichern</translation>
    </message>
    <message>
        <source>Save a still</source>
        <translation>Standbild sichern</translation>
    </message>
    <message>
        <source>Save as</source>
        <translation>Sichern als</translation>
    </message>
    <message>
        <source>Save as %1</source>
        <translation>Als %1 sichern</translation>
    </message>
    <message>
        <source>Save here</source>
        <translation>Hier sichern</translation>
    </message>
    <message>
        <source>Save still</source>
        <translation>Standbild sichern</translation>
    </message>
    <message>
        <source>Saved</source>
        <translation>Gesichert</translation>
    </message>
    <message>
        <source>Saved as %1.</source>
        <translation>Gesichert als %1.</translation>
    </message>
    <message>
        <source>Saving</source>
        <translation>Wird gesichert</translation>
    </message>
    <message>
        <source>Screenshots</source>
        <translation>Bildschirmfotos</translation>
    </message>
    <message>
        <source>Second photo</source>
        <translation>Zweites Foto</translation>
    </message>
    <message>
        <source>Send or keep</source>
        <translation>Senden oder behalten</translation>
    </message>
    <message>
        <source>Sepia</source>
        <translation>Sepia</translation>
    </message>
    <message>
        <source>Set Color</source>
        <translation>Farbe festlegen</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Shades</source>
        <translation>Sonnenbrille</translation>
    </message>
    <message>
        <source>Share</source>
        <translation>Teilen</translation>
    </message>
    <message>
        <source>Share it</source>
        <translation>Teilen</translation>
    </message>
    <message>
        <source>Shift</source>
        <translation>Umschalt</translation>
    </message>
    <message>
        <source>Show in folder</source>
        <translation>Im Ordner zeigen</translation>
    </message>
    <message>
        <source>Side by side</source>
        <translation>Nebeneinander</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>Sleepy</source>
        <translation>Müde</translation>
    </message>
    <message>
        <source>Smile</source>
        <translation>Lächeln</translation>
    </message>
    <message>
        <source>Snowflake</source>
        <translation>Schneeflocke</translation>
    </message>
    <message>
        <source>Snowman</source>
        <translation>Schneemann</translation>
    </message>
    <message>
        <source>Soft</source>
        <translation>Weich</translation>
    </message>
    <message>
        <source>Space</source>
        <translation>Leertaste</translation>
    </message>
    <message>
        <source>Sparkles</source>
        <translation>Funkeln</translation>
    </message>
    <message>
        <source>Sprout</source>
        <translation>Keimling</translation>
    </message>
    <message>
        <source>Star</source>
        <translation>Stern</translation>
    </message>
    <message>
        <source>Starting the camera…</source>
        <translation>Die Kamera startet …</translation>
    </message>
    <message>
        <source>Stays in place</source>
        <translation>Bleibt am Platz</translation>
    </message>
    <message>
        <source>Step %1 of %2</source>
        <translation>Schritt %1 von %2</translation>
    </message>
    <message>
        <source>Sticker</source>
        <translation>Sticker</translation>
    </message>
    <message>
        <source>Stickers</source>
        <translation>Sticker</translation>
    </message>
    <message>
        <source>Still</source>
        <translation>Standbild</translation>
    </message>
    <message>
        <source>Store raster graphics information.</source>
        <translation>Speichert Rastergrafiken.</translation>
    </message>
    <message>
        <source>Storm</source>
        <translation>Gewitter</translation>
    </message>
    <message>
        <source>Strawberry</source>
        <translation>Erdbeere</translation>
    </message>
    <message>
        <source>Strength</source>
        <translation>Stärke</translation>
    </message>
    <message>
        <source>Suggested</source>
        <translation>Empfohlen</translation>
    </message>
    <message>
        <source>Suitcase</source>
        <translation>Koffer</translation>
    </message>
    <message>
        <source>Sun</source>
        <translation>Sonne</translation>
    </message>
    <message>
        <source>Sunflower</source>
        <translation>Sonnenblume</translation>
    </message>
    <message>
        <source>Swap</source>
        <translation>Tauschen</translation>
    </message>
    <message>
        <source>Swap it with its neighbour</source>
        <translation>Mit dem Nachbarn tauschen</translation>
    </message>
    <message>
        <source>Swipe for the next photo</source>
        <translation>Wischen für das nächste Foto</translation>
    </message>
    <message>
        <source>Swirl</source>
        <translation>Wirbel</translation>
    </message>
    <message>
        <source>TIFF</source>
        <translation>TIFF</translation>
    </message>
    <message>
        <source>TIFF pages coded with JBIG can&apos;t be read</source>
        <translation>TIFF-Seiten, die mit JBIG kodiert sind, können nicht gelesen werden</translation>
    </message>
    <message>
        <source>TIFF pictures need lamina-decoder, which is not installed</source>
        <translation>TIFF-Bilder brauchen lamina-decoder, das nicht installiert ist</translation>
    </message>
    <message>
        <source>TIFF pictures need libtiff</source>
        <translation>TIFF-Bilder brauchen libtiff</translation>
    </message>
    <message>
        <source>Tag</source>
        <translation>Anhänger</translation>
    </message>
    <message>
        <source>Take a photo</source>
        <translation>Foto aufnehmen</translation>
    </message>
    <message>
        <source>Take it again</source>
        <translation>Noch einmal aufnehmen</translation>
    </message>
    <message>
        <source>Take out</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Take this folder out of the library? Its photos stay where they are.</source>
        <translation>Diesen Ordner aus der Mediathek nehmen? Seine Fotos bleiben, wo sie sind.</translation>
    </message>
    <message>
        <source>Takes this color again</source>
        <translation>Nimmt wieder diese Farbe</translation>
    </message>
    <message>
        <source>Tape</source>
        <translation>Klebeband</translation>
    </message>
    <message>
        <source>Ten frames</source>
        <translation>Zehn Rahmen</translation>
    </message>
    <message>
        <source>Tent</source>
        <translation>Zelt</translation>
    </message>
    <message>
        <source>That didn’t work</source>
        <translation>Das hat nicht geklappt</translation>
    </message>
    <message>
        <source>The arrow keys go to the next photo</source>
        <translation>Die Pfeiltasten führen zum nächsten Foto</translation>
    </message>
    <message>
        <source>The audio and video won’t function with the current export type. Try downloading the file as an MP4 video.</source>
        <translation>Ton und Video funktionieren mit diesem Dateityp nicht. Sichern Sie die Datei als MP4-Video.</translation>
    </message>
    <message>
        <source>The blend</source>
        <translation>Die Überblendung</translation>
    </message>
    <message>
        <source>The camera has stopped</source>
        <translation>Die Kamera ist stehen geblieben</translation>
    </message>
    <message>
        <source>The clip was not saved</source>
        <translation>Das Video wurde nicht gesichert</translation>
    </message>
    <message>
        <source>The collage</source>
        <translation>Die Collage</translation>
    </message>
    <message>
        <source>The collage has no place for %1 of the photos.</source>
        <translation>Die Collage hat für %1 der Fotos keinen Platz.</translation>
    </message>
    <message>
        <source>The collage has no place for one of the photos.</source>
        <translation>Die Collage hat für eines der Fotos keinen Platz.</translation>
    </message>
    <message>
        <source>The file</source>
        <translation>Die Datei</translation>
    </message>
    <message>
        <source>The file, to the clipboard</source>
        <translation>Die Datei, in die Zwischenablage</translation>
    </message>
    <message>
        <source>The finished picture</source>
        <translation>Das fertige Bild</translation>
    </message>
    <message>
        <source>The folder can’t be read.</source>
        <translation>Der Ordner lässt sich nicht lesen.</translation>
    </message>
    <message>
        <source>The folder does not exist.</source>
        <translation>Den Ordner gibt es nicht.</translation>
    </message>
    <message>
        <source>The photo</source>
        <translation>Das Foto</translation>
    </message>
    <message>
        <source>The photo is being changed</source>
        <translation>Das Foto wird geändert</translation>
    </message>
    <message>
        <source>The photo is damaged</source>
        <translation>Das Foto ist beschädigt</translation>
    </message>
    <message>
        <source>The photo that you took</source>
        <translation>Das aufgenommene Foto</translation>
    </message>
    <message>
        <source>The picture</source>
        <translation>Das Bild</translation>
    </message>
    <message>
        <source>The picture, to the clipboard</source>
        <translation>Das Bild, in die Zwischenablage</translation>
    </message>
    <message>
        <source>The still was not saved</source>
        <translation>Das Standbild wurde nicht gesichert</translation>
    </message>
    <message>
        <source>Their photos belong to the library, beside those in your own folder.</source>
        <translation>Ihre Fotos gehören zur Mediathek, neben denen in Ihrem eigenen Ordner.</translation>
    </message>
    <message>
        <source>There is no room for %1 more photos.</source>
        <translation>Für %1 weitere Fotos ist kein Platz.</translation>
    </message>
    <message>
        <source>There is no room for one more photo.</source>
        <translation>Für ein weiteres Foto ist kein Platz.</translation>
    </message>
    <message>
        <source>Thermometer</source>
        <translation>Thermometer</translation>
    </message>
    <message>
        <source>This is not a folder.</source>
        <translation>Das ist kein Ordner.</translation>
    </message>
    <message>
        <source>This list</source>
        <translation>Diese Liste</translation>
    </message>
    <message>
        <source>This one lies on top. Move it, zoom it, let the first one shine through.</source>
        <translation>Dieses liegt oben. Verschieben, zoomen, das erste durchscheinen lassen.</translation>
    </message>
    <message>
        <source>This one stays in place. Pick something calm: a sky, a wall, the sea.</source>
        <translation>Dieses bleibt am Platz. Am besten etwas Ruhiges: ein Himmel, eine Wand, das Meer.</translation>
    </message>
    <message>
        <source>Three circles</source>
        <translation>Drei Kreise</translation>
    </message>
    <message>
        <source>Three columns</source>
        <translation>Drei Spalten</translation>
    </message>
    <message>
        <source>Three or six digits of 0 to 9 and A to F, such as #E5906F</source>
        <translation>Drei oder sechs Ziffern von 0 bis 9 und A bis F, etwa #E5906F</translation>
    </message>
    <message>
        <source>Three photos</source>
        <translation>Drei Fotos</translation>
    </message>
    <message>
        <source>Three rows</source>
        <translation>Drei Reihen</translation>
    </message>
    <message>
        <source>Toast</source>
        <translation>Toast</translation>
    </message>
    <message>
        <source>Too many photos</source>
        <translation>Zu viele Fotos</translation>
    </message>
    <message>
        <source>Tools</source>
        <translation>Werkzeuge</translation>
    </message>
    <message>
        <source>Transparent background</source>
        <translation>Transparenter Hintergrund</translation>
    </message>
    <message>
        <source>Travel</source>
        <translation>Reisen</translation>
    </message>
    <message>
        <source>Tree</source>
        <translation>Baum</translation>
    </message>
    <message>
        <source>Triangles from the top</source>
        <translation>Dreiecke von oben</translation>
    </message>
    <message>
        <source>Triangles round the middle</source>
        <translation>Dreiecke um die Mitte</translation>
    </message>
    <message>
        <source>Try again</source>
        <translation>Noch einmal versuchen</translation>
    </message>
    <message>
        <source>Tulip</source>
        <translation>Tulpe</translation>
    </message>
    <message>
        <source>Turn a sticker or the photo</source>
        <translation>Sticker oder Foto drehen</translation>
    </message>
    <message>
        <source>Turn and scale sticker</source>
        <translation>Sticker drehen und skalieren</translation>
    </message>
    <message>
        <source>Twinkle</source>
        <translation>Glitzern</translation>
    </message>
    <message>
        <source>Two hearts</source>
        <translation>Zwei Herzen</translation>
    </message>
    <message>
        <source>Two photos</source>
        <translation>Zwei Fotos</translation>
    </message>
    <message>
        <source>Umbrella</source>
        <translation>Regenschirm</translation>
    </message>
    <message>
        <source>Unable to find a camera on your device.</source>
        <translation>An diesem Gerät ist keine Kamera zu finden.</translation>
    </message>
    <message>
        <source>Under another name or place</source>
        <translation>Unter anderem Namen oder Ort</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Rückgängig</translation>
    </message>
    <message>
        <source>Up one folder</source>
        <translation>Einen Ordner höher</translation>
    </message>
    <message>
        <source>Use in this work</source>
        <translation>In dieser Arbeit verwenden</translation>
    </message>
    <message>
        <source>Use photo</source>
        <translation>Foto verwenden</translation>
    </message>
    <message>
        <source>Use the first photo again</source>
        <translation>Das erste Foto wieder nehmen</translation>
    </message>
    <message>
        <source>Use the photo</source>
        <translation>Foto verwenden</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>Waiting for the picture</source>
        <translation>Warten auf das Bild</translation>
    </message>
    <message>
        <source>Warm</source>
        <translation>Warm</translation>
    </message>
    <message>
        <source>Weather</source>
        <translation>Wetter</translation>
    </message>
    <message>
        <source>Wedge and zigzag</source>
        <translation>Keil und Zickzack</translation>
    </message>
    <message>
        <source>Wedge in the corner</source>
        <translation>Keil in der Ecke</translation>
    </message>
    <message>
        <source>Whale</source>
        <translation>Wal</translation>
    </message>
    <message>
        <source>What the camera sees</source>
        <translation>Was die Kamera sieht</translation>
    </message>
    <message>
        <source>What you are working on stays open.</source>
        <translation>Woran Sie arbeiten, bleibt offen.</translation>
    </message>
    <message>
        <source>Where it was saved</source>
        <translation>Wo es gesichert wurde</translation>
    </message>
    <message>
        <source>Wind</source>
        <translation>Wind</translation>
    </message>
    <message>
        <source>Windows</source>
        <translation>Fenster</translation>
    </message>
    <message>
        <source>Wink</source>
        <translation>Zwinkern</translation>
    </message>
    <message>
        <source>YES</source>
        <translation>JA</translation>
    </message>
    <message>
        <source>You are not allowed to look into this folder.</source>
        <translation>Sie dürfen diesen Ordner nicht einsehen.</translation>
    </message>
    <message>
        <source>Your Image has been saved in Photos.</source>
        <translation>Ihr Bild wurde in Fotos gesichert.</translation>
    </message>
    <message>
        <source>Your Video has been saved in Photos</source>
        <translation>Ihr Video wurde in Fotos gesichert</translation>
    </message>
    <message>
        <source>Your folders are not shown to Lamina here. The photos that you choose in your system’s own window are.</source>
        <translation>Ihre Ordner werden Lamina hier nicht gezeigt. Fotos, die Sie im Fenster Ihres Systems wählen, schon.</translation>
    </message>
    <message>
        <source>Your system asks whether Lamina may use the camera.</source>
        <translation>Ihr System fragt, ob Lamina die Kamera benutzen darf.</translation>
    </message>
    <message>
        <source>Your work can’t be kept safe: %1</source>
        <translation>Ihre Arbeit kann nicht gesichert werden: %1</translation>
    </message>
    <message>
        <source>Zigzag columns</source>
        <translation>Zickzackspalten</translation>
    </message>
    <message>
        <source>Zigzag rows</source>
        <translation>Zickzackreihen</translation>
    </message>
    <message>
        <source>Zigzag, across</source>
        <translation>Zickzack, quer</translation>
    </message>
    <message>
        <source>Zigzag, upright</source>
        <translation>Zickzack, hochkant</translation>
    </message>
    <message>
        <source>Zoom</source>
        <translation>Zoom</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>Vergrößern</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>Verkleinern</translation>
    </message>
    <message>
        <source>a BMP picture can&apos;t be larger than 2 GB</source>
        <translation>ein BMP-Bild kann nicht größer als 2 GB sein</translation>
    </message>
    <message>
        <source>a GIF picture can&apos;t be longer than 65535 pixels</source>
        <translation>ein GIF-Bild kann nicht länger als 65535 Pixel sein</translation>
    </message>
    <message>
        <source>a JPEG picture can&apos;t be longer than 65500 pixels</source>
        <translation>ein JPEG-Bild kann nicht länger als 65500 Pixel sein</translation>
    </message>
    <message>
        <source>a TIFF picture can&apos;t be larger than 4 GB</source>
        <translation>ein TIFF-Bild kann nicht größer als 4 GB sein</translation>
    </message>
    <message>
        <source>a composition can&apos;t be drawn at this size</source>
        <translation>Eine Zusammenstellung lässt sich in dieser Größe nicht zeichnen</translation>
    </message>
    <message>
        <source>a movie&apos;s sides are from 1 to 16384</source>
        <translation>Die Seiten eines Films liegen zwischen 1 und 16384</translation>
    </message>
    <message>
        <source>a part of it is missing or damaged</source>
        <translation>ein Teil davon fehlt oder ist beschädigt</translation>
    </message>
    <message>
        <source>a screen is presented already</source>
        <translation>es wird schon ein Bildschirm gezeigt</translation>
    </message>
    <message>
        <source>a secure connection could not be made</source>
        <translation>es konnte keine sichere Verbindung aufgebaut werden</translation>
    </message>
    <message>
        <source>a symbolic link leads in a circle</source>
        <translation>ein symbolischer Link führt im Kreis</translation>
    </message>
    <message>
        <source>a thumbnail has no such size</source>
        <translation>ein Vorschaubild hat keine solche Größe</translation>
    </message>
    <message>
        <source>access to the photo library is not given</source>
        <translation>der Zugriff auf die Fotos ist nicht erlaubt</translation>
    </message>
    <message>
        <source>another process is mending it</source>
        <translation>ein anderer Prozess setzt sie instand</translation>
    </message>
    <message>
        <source>another still is being taken</source>
        <translation>es wird schon ein Foto aufgenommen</translation>
    </message>
    <message>
        <source>brightness</source>
        <translation>Helligkeit</translation>
    </message>
    <message>
        <source>camera photo</source>
        <translation>Kamerafoto</translation>
    </message>
    <message>
        <source>can&apos;t be started</source>
        <translation>lässt sich nicht starten</translation>
    </message>
    <message>
        <source>can&apos;t be written</source>
        <translation>kann nicht geschrieben werden</translation>
    </message>
    <message>
        <source>cancelled</source>
        <translation>abgebrochen</translation>
    </message>
    <message>
        <source>contrast</source>
        <translation>Kontrast</translation>
    </message>
    <message>
        <source>emboss</source>
        <translation>Relief</translation>
    </message>
    <message>
        <source>filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>folder</source>
        <translation>Ordner</translation>
    </message>
    <message>
        <source>fx</source>
        <translation>Effekte</translation>
    </message>
    <message>
        <source>gallery</source>
        <translation>Galerie</translation>
    </message>
    <message>
        <source>highlight</source>
        <translation>Lichter</translation>
    </message>
    <message>
        <source>is a folder</source>
        <translation>ist ein Ordner</translation>
    </message>
    <message>
        <source>is a link to another file</source>
        <translation>ist eine Verknüpfung mit einer anderen Datei</translation>
    </message>
    <message>
        <source>is no profile of inks</source>
        <translation>ist kein Profil für Druckfarben</translation>
    </message>
    <message>
        <source>is not written to its end</source>
        <translation>wird nicht zu Ende geschrieben</translation>
    </message>
    <message>
        <source>is the same file as </source>
        <translation>ist dieselbe Datei wie </translation>
    </message>
    <message>
        <source>it can&apos;t be mended</source>
        <translation>sie lässt sich nicht instand setzen</translation>
    </message>
    <message>
        <source>it gives no picture</source>
        <translation>sie liefert kein Bild</translation>
    </message>
    <message>
        <source>it is damaged again and again</source>
        <translation>sie wird immer wieder beschädigt</translation>
    </message>
    <message>
        <source>it is open in another window</source>
        <translation>sie ist in einem anderen Fenster geöffnet</translation>
    </message>
    <message>
        <source>its original is no longer at hand</source>
        <translation>sein Original ist nicht mehr da</translation>
    </message>
    <message>
        <source>layout</source>
        <translation>Layout</translation>
    </message>
    <message>
        <source>longer than </source>
        <translation>länger als </translation>
    </message>
    <message>
        <source>movies of this type can&apos;t be written</source>
        <translation>Filme dieser Art können nicht geschrieben werden</translation>
    </message>
    <message>
        <source>nested too deep</source>
        <translation>zu tief verschachtelt</translation>
    </message>
    <message>
        <source>no file was written</source>
        <translation>es wurde keine Datei geschrieben</translation>
    </message>
    <message>
        <source>no program opens folders</source>
        <translation>kein Programm öffnet Ordner</translation>
    </message>
    <message>
        <source>no program takes it</source>
        <translation>kein Programm nimmt sie an</translation>
    </message>
    <message>
        <source>no space left on the device</source>
        <translation>auf dem Gerät ist kein Platz mehr</translation>
    </message>
    <message>
        <source>no such file</source>
        <translation>die Datei gibt es nicht</translation>
    </message>
    <message>
        <source>no such folder</source>
        <translation>den Ordner gibt es nicht</translation>
    </message>
    <message>
        <source>nobody writes to it</source>
        <translation>niemand schreibt hinein</translation>
    </message>
    <message>
        <source>not JSON</source>
        <translation>kein JSON</translation>
    </message>
    <message>
        <source>not a JSON object</source>
        <translation>kein JSON-Objekt</translation>
    </message>
    <message>
        <source>not a clip that can be read</source>
        <translation>kein Film, der sich lesen lässt</translation>
    </message>
    <message>
        <source>not a picture</source>
        <translation>kein Bild</translation>
    </message>
    <message>
        <source>not a regular file</source>
        <translation>keine gewöhnliche Datei</translation>
    </message>
    <message>
        <source>not enough memory</source>
        <translation>zu wenig Speicher</translation>
    </message>
    <message>
        <source>nothing here reads the coding of the clip: </source>
        <translation>Nichts hier liest die Kodierung des Videos: </translation>
    </message>
    <message>
        <source>nothing of the movie lies in the range</source>
        <translation>Im gewählten Bereich liegt nichts vom Film</translation>
    </message>
    <message>
        <source>nothing was recorded</source>
        <translation>Es wurde nichts aufgenommen</translation>
    </message>
    <message>
        <source>numbers of sound come where packets were announced</source>
        <translation>Statt der angekündigten Tonpakete kommen Abtastwerte</translation>
    </message>
    <message>
        <source>opacity</source>
        <translation>Deckkraft</translation>
    </message>
    <message>
        <source>or</source>
        <translation>oder</translation>
    </message>
    <message>
        <source>packets of sound come where numbers were announced</source>
        <translation>Statt der angekündigten Abtastwerte kommen Tonpakete</translation>
    </message>
    <message>
        <source>pasted picture</source>
        <translation>eingefügtes Bild</translation>
    </message>
    <message>
        <source>permission denied</source>
        <translation>keine Berechtigung</translation>
    </message>
    <message>
        <source>photo</source>
        <translation>Foto</translation>
    </message>
    <message>
        <source>photos can’t be added to this album</source>
        <translation>diesem Album können keine Fotos hinzugefügt werden</translation>
    </message>
    <message>
        <source>pictures of the type &quot;</source>
        <translation>Bilder der Art &quot;</translation>
    </message>
    <message>
        <source>reading has failed</source>
        <translation>Das Lesen ist fehlgeschlagen</translation>
    </message>
    <message>
        <source>reset</source>
        <translation>Reset</translation>
    </message>
    <message>
        <source>saturation</source>
        <translation>Sättigung</translation>
    </message>
    <message>
        <source>secure connections are not supported here</source>
        <translation>sichere Verbindungen werden hier nicht unterstützt</translation>
    </message>
    <message>
        <source>sharpen</source>
        <translation>Schärfen</translation>
    </message>
    <message>
        <source>something went wrong</source>
        <translation>etwas ist schiefgegangen</translation>
    </message>
    <message>
        <source>sound of the codec </source>
        <translation>Ton der Kodierung </translation>
    </message>
    <message>
        <source>sticker</source>
        <translation>Sticker</translation>
    </message>
    <message>
        <source>such a page can&apos;t be written</source>
        <translation>eine solche Seite kann nicht geschrieben werden</translation>
    </message>
    <message>
        <source>support for PDF can&apos;t be loaded</source>
        <translation>die Unterstützung für PDF kann nicht geladen werden</translation>
    </message>
    <message>
        <source>support for PDF is not installed</source>
        <translation>die Unterstützung für PDF ist nicht installiert</translation>
    </message>
    <message>
        <source>support for SQLite can&apos;t be loaded</source>
        <translation>die Unterstützung für SQLite kann nicht geladen werden</translation>
    </message>
    <message>
        <source>support for SQLite is not installed</source>
        <translation>die Unterstützung für SQLite ist nicht installiert</translation>
    </message>
    <message>
        <source>support for cameras can&apos;t be loaded</source>
        <translation>die Unterstützung für Kameras lässt sich nicht laden</translation>
    </message>
    <message>
        <source>support for cameras is not installed</source>
        <translation>die Unterstützung für Kameras ist nicht installiert</translation>
    </message>
    <message>
        <source>support for videos can&apos;t be loaded</source>
        <translation>die Unterstützung für Videos kann nicht geladen werden</translation>
    </message>
    <message>
        <source>support for videos is not installed</source>
        <translation>die Unterstützung für Videos ist nicht installiert</translation>
    </message>
    <message>
        <source>the FFmpeg that is installed can&apos;t write AAC</source>
        <translation>Das installierte FFmpeg kann kein AAC schreiben</translation>
    </message>
    <message>
        <source>the FFmpeg that is installed can&apos;t write H.264</source>
        <translation>das installierte FFmpeg kann kein H.264 schreiben</translation>
    </message>
    <message>
        <source>the address leads from a secure connection to an open one</source>
        <translation>die Adresse führt von einer sicheren zu einer offenen Verbindung</translation>
    </message>
    <message>
        <source>the address leads on too often</source>
        <translation>die Adresse führt zu oft weiter</translation>
    </message>
    <message>
        <source>the address leads to something that is no web page or file</source>
        <translation>die Adresse führt zu etwas, das weder Webseite noch Datei ist</translation>
    </message>
    <message>
        <source>the answer can&apos;t be understood</source>
        <translation>die Antwort ist nicht zu verstehen</translation>
    </message>
    <message>
        <source>the answer ends too early</source>
        <translation>die Antwort endet zu früh</translation>
    </message>
    <message>
        <source>the answer is too large</source>
        <translation>die Antwort ist zu groß</translation>
    </message>
    <message>
        <source>the application is leaving</source>
        <translation>die Anwendung wird beendet</translation>
    </message>
    <message>
        <source>the camera gives no picture</source>
        <translation>die Kamera liefert kein Bild</translation>
    </message>
    <message>
        <source>the camera isn’t running</source>
        <translation>die Kamera läuft nicht</translation>
    </message>
    <message>
        <source>the camera service stopped</source>
        <translation>der Kameradienst ist ausgefallen</translation>
    </message>
    <message>
        <source>the camera was unplugged</source>
        <translation>die Kamera wurde abgezogen</translation>
    </message>
    <message>
        <source>the clip holds no picture</source>
        <translation>der Film enthält kein Bild</translation>
    </message>
    <message>
        <source>the clip is damaged</source>
        <translation>der Film ist beschädigt</translation>
    </message>
    <message>
        <source>the clip takes too long to be read</source>
        <translation>den Film zu lesen dauert zu lange</translation>
    </message>
    <message>
        <source>the colour profile for print is damaged</source>
        <translation>das Farbprofil für den Druck ist beschädigt</translation>
    </message>
    <message>
        <source>the colour profile for print is not installed</source>
        <translation>das Farbprofil für den Druck ist nicht installiert</translation>
    </message>
    <message>
        <source>the device can only be read</source>
        <translation>das Gerät lässt sich nur lesen</translation>
    </message>
    <message>
        <source>the document can&apos;t be made</source>
        <translation>das Dokument kann nicht erstellt werden</translation>
    </message>
    <message>
        <source>the download takes too long</source>
        <translation>das Herunterladen dauert zu lange</translation>
    </message>
    <message>
        <source>the file chooser named no file</source>
        <translation>der Dateidialog nannte keine Datei</translation>
    </message>
    <message>
        <source>the file ends too early</source>
        <translation>die Datei endet zu früh</translation>
    </message>
    <message>
        <source>the file holds no picture</source>
        <translation>die Datei enthält kein Bild</translation>
    </message>
    <message>
        <source>the file holds no sound</source>
        <translation>die Datei enthält keinen Ton</translation>
    </message>
    <message>
        <source>the file holds no thumbnail</source>
        <translation>die Datei enthält kein Vorschaubild</translation>
    </message>
    <message>
        <source>the file is empty</source>
        <translation>die Datei ist leer</translation>
    </message>
    <message>
        <source>the file is in use</source>
        <translation>die Datei wird gerade benutzt</translation>
    </message>
    <message>
        <source>the file is not on this device</source>
        <translation>die Datei liegt nicht auf diesem Gerät</translation>
    </message>
    <message>
        <source>the file is too large</source>
        <translation>die Datei ist zu groß</translation>
    </message>
    <message>
        <source>the file is too large for the device</source>
        <translation>die Datei ist zu groß für das Gerät</translation>
    </message>
    <message>
        <source>the font Liberation Sans Bold is not installed</source>
        <translation>die Schrift Liberation Sans Bold ist nicht installiert</translation>
    </message>
    <message>
        <source>the microphone was unplugged</source>
        <translation>das Mikrofon wurde abgezogen</translation>
    </message>
    <message>
        <source>the movie has begun already</source>
        <translation>Der Film hat schon begonnen</translation>
    </message>
    <message>
        <source>the movie has no tracks</source>
        <translation>Der Film hat keine Spuren</translation>
    </message>
    <message>
        <source>the movie is being read already</source>
        <translation>Der Film wird schon gelesen</translation>
    </message>
    <message>
        <source>the name is too long</source>
        <translation>der Name ist zu lang</translation>
    </message>
    <message>
        <source>the picture can&apos;t be read: its decoder can&apos;t be started</source>
        <translation>das Bild kann nicht gelesen werden: sein Decoder lässt sich nicht starten</translation>
    </message>
    <message>
        <source>the picture can&apos;t be read: its decoder stopped</source>
        <translation>das Bild kann nicht gelesen werden: sein Decoder hat aufgehört</translation>
    </message>
    <message>
        <source>the picture can&apos;t be read: its decoder took too long</source>
        <translation>das Bild kann nicht gelesen werden: sein Decoder hat zu lange gebraucht</translation>
    </message>
    <message>
        <source>the picture can&apos;t be read: this system can&apos;t confine its decoder</source>
        <translation>das Bild kann nicht gelesen werden: dieses System kann seinen Decoder nicht einsperren</translation>
    </message>
    <message>
        <source>the picture has no palette</source>
        <translation>dem Bild fehlt die Farbpalette</translation>
    </message>
    <message>
        <source>the picture is damaged</source>
        <translation>das Bild ist beschädigt</translation>
    </message>
    <message>
        <source>the picture is damaged; it is shown as far as it goes</source>
        <translation>das Bild ist beschädigt; es wird gezeigt, so weit es reicht</translation>
    </message>
    <message>
        <source>the picture is not in the colours of print</source>
        <translation>das Bild ist nicht in Druckfarben</translation>
    </message>
    <message>
        <source>the picture is too large</source>
        <translation>das Bild ist zu groß</translation>
    </message>
    <message>
        <source>the picture of the clip is too large</source>
        <translation>das Bild des Films ist zu groß</translation>
    </message>
    <message>
        <source>the proxy doesn&apos;t let it through</source>
        <translation>der Proxy lässt es nicht durch</translation>
    </message>
    <message>
        <source>the screen to present stands somewhere else</source>
        <translation>der Bildschirm, der gezeigt werden soll, steht schon woanders</translation>
    </message>
    <message>
        <source>the server closed the connection</source>
        <translation>der Server hat die Verbindung geschlossen</translation>
    </message>
    <message>
        <source>the server doesn&apos;t answer any more</source>
        <translation>der Server antwortet nicht mehr</translation>
    </message>
    <message>
        <source>the server refuses connections</source>
        <translation>der Server nimmt keine Verbindungen an</translation>
    </message>
    <message>
        <source>the server was not found</source>
        <translation>der Server wurde nicht gefunden</translation>
    </message>
    <message>
        <source>the server&apos;s certificate belongs to another server</source>
        <translation>das Zertifikat des Servers gehört einem anderen Server</translation>
    </message>
    <message>
        <source>the server&apos;s certificate can&apos;t be trusted</source>
        <translation>dem Zertifikat des Servers ist nicht zu trauen</translation>
    </message>
    <message>
        <source>the server&apos;s certificate comes from an unknown authority</source>
        <translation>das Zertifikat des Servers stammt von einer unbekannten Stelle</translation>
    </message>
    <message>
        <source>the server&apos;s certificate has expired</source>
        <translation>das Zertifikat des Servers ist abgelaufen</translation>
    </message>
    <message>
        <source>the server&apos;s certificate is not valid yet</source>
        <translation>das Zertifikat des Servers ist noch nicht gültig</translation>
    </message>
    <message>
        <source>the server&apos;s certificate is vouched for by nobody but itself</source>
        <translation>für das Zertifikat des Servers bürgt niemand als es selbst</translation>
    </message>
    <message>
        <source>the server&apos;s certificate was withdrawn</source>
        <translation>das Zertifikat des Servers wurde zurückgezogen</translation>
    </message>
    <message>
        <source>the system has no more threads to give</source>
        <translation>das System hat keine weiteren Threads zu vergeben</translation>
    </message>
    <message>
        <source>the thumbnail shows another picture</source>
        <translation>das Vorschaubild zeigt ein anderes Bild</translation>
    </message>
    <message>
        <source>the video can&apos;t be encoded</source>
        <translation>das Video lässt sich nicht kodieren</translation>
    </message>
    <message>
        <source>the window is closed</source>
        <translation>das Fenster ist geschlossen</translation>
    </message>
    <message>
        <source>there are too many threads</source>
        <translation>Es laufen zu viele Threads</translation>
    </message>
    <message>
        <source>there is no camera</source>
        <translation>es gibt keine Kamera</translation>
    </message>
    <message>
        <source>there is no display to open a window on</source>
        <translation>es ist kein Bildschirm da, auf dem sich ein Fenster öffnen ließe</translation>
    </message>
    <message>
        <source>there is no file</source>
        <translation>es gibt keine Datei</translation>
    </message>
    <message>
        <source>there is no folder for temporary files</source>
        <translation>es gibt keinen Ordner für temporäre Dateien</translation>
    </message>
    <message>
        <source>there is no link</source>
        <translation>es gibt keinen Link</translation>
    </message>
    <message>
        <source>there is no movie to insert</source>
        <translation>Es gibt keinen Film zum Einfügen</translation>
    </message>
    <message>
        <source>there is no network</source>
        <translation>es ist kein Netz da</translation>
    </message>
    <message>
        <source>there is no picture</source>
        <translation>es gibt kein Bild</translation>
    </message>
    <message>
        <source>there is no picture in it</source>
        <translation>es ist kein Bild darin</translation>
    </message>
    <message>
        <source>there is no picture in the movie</source>
        <translation>Der Film enthält kein Bild</translation>
    </message>
    <message>
        <source>there is no screen to present</source>
        <translation>es gibt keinen Bildschirm zu zeigen</translation>
    </message>
    <message>
        <source>there is no such quality</source>
        <translation>diese Qualität gibt es nicht</translation>
    </message>
    <message>
        <source>there is something of that name</source>
        <translation>es gibt schon etwas mit diesem Namen</translation>
    </message>
    <message>
        <source>this is no address of a web page or file</source>
        <translation>dies ist keine Adresse einer Webseite oder Datei</translation>
    </message>
    <message>
        <source>this is no movie</source>
        <translation>das ist kein Film</translation>
    </message>
    <message>
        <source>this is no path</source>
        <translation>dies ist kein Pfad</translation>
    </message>
    <message>
        <source>this is not the name of a file</source>
        <translation>das ist kein Dateiname</translation>
    </message>
    <message>
        <source>this kind of BMP compression can&apos;t be read</source>
        <translation>diese Art der BMP-Kompression ist nicht lesbar</translation>
    </message>
    <message>
        <source>this kind of HEIC picture can&apos;t be read</source>
        <translation>diese Art von HEIC-Bild ist nicht lesbar</translation>
    </message>
    <message>
        <source>this kind of JPEG is not supported</source>
        <translation>diese Art von JPEG wird nicht unterstützt</translation>
    </message>
    <message>
        <source>this kind of TIFF can&apos;t be read</source>
        <translation>diese Art von TIFF ist nicht lesbar</translation>
    </message>
    <message>
        <source>to</source>
        <translation>bis</translation>
    </message>
    <message>
        <source>today at %1</source>
        <translation>heute um %1</translation>
    </message>
    <message>
        <source>too many files</source>
        <translation>zu viele Dateien</translation>
    </message>
    <message>
        <source>too many files of this name</source>
        <translation>zu viele Dateien dieses Namens</translation>
    </message>
    <message>
        <source>too many requests are waiting</source>
        <translation>es warten zu viele Anfragen</translation>
    </message>
    <message>
        <source>too many works are open</source>
        <translation>zu viele Arbeiten sind geöffnet</translation>
    </message>
    <message>
        <source>tools</source>
        <translation>Tools</translation>
    </message>
    <message>
        <source>unsharpen</source>
        <translation>Weichzeichnen</translation>
    </message>
    <message>
        <source>vignette</source>
        <translation>Vignette</translation>
    </message>
    <message>
        <source>yesterday at %1</source>
        <translation>gestern um %1</translation>
    </message>
    <message>
        <source>“%1”</source>
        <translation>„%1“</translation>
    </message>
    <message>
        <source>⚠️</source>
        <translation>⚠️</translation>
    </message>
</context>
</TS>
