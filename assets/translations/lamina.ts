<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" sourcelanguage="en">
<context>
    <name>Lamina</name>
    <message>
        <source>%1 %</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 It goes on as soon as the camera is back.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 Perhaps something else is using it. Close that, and try again.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 changed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 chosen</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 degrees hue</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 in the file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 on both photos</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 on photo %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 photos</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 × %2 cm, %3 ppi</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 × %2 pixels</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1% saturation, %2% brightness</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1, %2, chosen</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1: %2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1° hue, %2 % saturation, %3 % brightness</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1×</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>1 photo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>300 pixels per inch</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A collage in ten frames</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A page up or down</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>About Lamina</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>About and licence</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add a folder…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Albums</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>All Photos</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>All files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Allow camera access?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Allow photo album access?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Animals</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Another app on this computer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Another filter</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Another place</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Another place…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Another row or answer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Arrow keys move it, plus and minus zoom</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Arrow keys move the photo, plus and minus zoom it, comma and period turn it, digits choose another one</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Arrow keys move the second photo, plus and minus zoom it</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Arrow keys move the sticker, plus and minus scale it, comma and period turn it, Delete removes it</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>As an attachment</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Avocado</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Back</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Balloon</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Banner</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bear</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bee</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Before</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Before. Tap to go back</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Begin a blend?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Begin a collage?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Begin or end a clip</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Below</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Best for complex images, illustrations</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Best for document (and emailing)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Best for printing</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Best for sharing</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Best for web design and animations</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Blend</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Boat</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Border and gaps</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Border width</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bow</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bring the photo back</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Brown</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bubble</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bubbles</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bunny</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Butterfly</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>CMYK (best for professional printing)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cactus</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Camera</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Camera Unavailable</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Canvas</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can’t ask for a place</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can’t change the photo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can’t copy</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can’t crop the photo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can’t discard the work</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can’t keep the folders</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can’t open a window</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can’t open the camera</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can’t open the clip</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can’t open the file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can’t open the movie</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can’t open the page</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can’t open the photo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can’t open the work</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can’t print</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can’t save the copy</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can’t save the photo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can’t save the picture</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can’t send the file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can’t share</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can’t show the file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can’t take the photo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Car</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cat</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Chat</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cherry</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Chick</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose Move to drag the second photo and to zoom it.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose a folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose a movie</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose a photo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose a photo or leave it</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose a place</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose a tool</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose a tool of a collage</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose another movie</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose photos</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose photos…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose this folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choosing photos</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Chosen</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Circle in a circle</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clear</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clearness</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Click on below icons to share PDF Document</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Click on below icons to share SVG</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clip</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close the window</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cloud</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clover</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Coffee</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Collage</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Color</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Color in digits</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Color profile</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Comet</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Comic</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Compare</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Compare with before</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Compass</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Confetti</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Continue</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copied.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copy</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Corners</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Crop again</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Crop marks</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Crown</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ctrl</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cupcake</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Daisy</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Delete</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Delete sticker</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Diagonal</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Diamond</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Discard</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Discard Editing</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Discard this work?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Dog</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Done</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Donut</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Drag the photo, pinch to zoom it, twist to turn it. A double tap fits it to its slot again. The button of a photo, dragged onto another one, swaps the two.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Drag the photo, turn the wheel to zoom it, with Shift to turn it. A double click fits it to its slot again. The button of a photo, dragged onto another one, swaps the two.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Drag the second photo, pinch to zoom it. Arrow keys move it a little, plus and minus zoom.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Drag the second photo, turn the wheel to zoom it. Arrow keys move it a little, plus and minus zoom.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Drag to move, pinch to zoom</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Drag to move, pinch to zoom, twist to turn</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Drag to move, turn the wheel to zoom</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Drag to move, turn the wheel to zoom, with Shift to turn</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Dream</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Drop</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Effects</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Eight frames</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>End</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ends the clip</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Enter</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Exotic</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Feed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Feelings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File size: Large</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File size: Medium</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File size: Small</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File type</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Film</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Filter</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Firework</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>First and last</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>First photo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fish</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Flip H</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Flip V</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Food</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Frames and ribbons</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Friends</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Frog</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Full screen</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Gap</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Garland</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Gradient</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Gray</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>HEIC pictures need lamina-decoder, which is not installed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>HEIC pictures need libheif</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Heart</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Hide</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>High</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>High quality video</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Hold still</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Home</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Home key</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Hue</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ice cream</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ink</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>JPEG pictures with arithmetic coding are not supported</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>JPG</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Jump to a name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Keep</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Keys</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ladybird</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lamina</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lamina blends two photos. %1 were left out.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lamina blends two photos. One was left out.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lamina may not use the camera</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lamina puts photos together: it lays one over another, or several into a collage. Your photos stay on this device.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Laugh</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lay one photo over another</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Layout</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Leaf</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Left</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Left and right choose another filter. Held down it shows the picture as it came.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Left out besides: %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lemon</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Letter</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lighthouse</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Line between before and now</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lines</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lists</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Live filters</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Live picture</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Live pictures</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Look at a photo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Low</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>MP4 Video</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Mail</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Medium</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Melon</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Menu</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Menu of a photo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Menu of photo %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Moon</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>More</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Mountain</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move it further</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move the photo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Movie</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Movies</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Mushroom</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>NO</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Need your permission to access photo albumbs</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Need your permission to take a photo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Next control</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No camera</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No longer there: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No movies in this folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No photos in this folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No photos yet</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>None changed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Not available now</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Not saved</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Not saved in Photos</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Not saved yet</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Note line</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Now</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>OK</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>On paper</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>On top</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>On top, moves</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>One above the other</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>One above two</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>One beside two</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>One cut, eight frames</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>One photo shines through the other</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>One step back</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Only the first %1 of %2 are shown.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Oops</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open a new window</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open a photo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open the photo?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open the photos?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open with</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Opening %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Opens %1 in the browser</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Opens the list of what can be done with the file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Original</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Other camera</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>PDF Print</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>PDF Standard</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>PNG</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Palm</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Paste</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pause</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pause or go on</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Penguin</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>PgDn</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>PgUp</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Photo %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Photo %1 of %2 is in hand.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Photo %1 of 2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Photo 1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Photo 1 is not movable.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Photo 1 lies over photo 2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Photo 2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Photo 2 lies over photo 1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Photo behind the crop square</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Photo folders</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Photo folders…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Photo library</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Photo of a collage</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Photo, %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Photo, %1, chosen, number %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Photos</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Photos are looked for in %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Photos back</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pictures</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pine</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>PipeWire isn’t running</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pizza</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Place in the movie</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Plants</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Play</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Please Wait...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Please select 2 photos</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Please select 3 photos</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Plug one in, and it goes on here.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Plum</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Poster</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Print</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Put photos together.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quality</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>RGB (best for digital use)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Rainbow</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Recommended</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Recommended: opens %1 in the browser</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Redo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Relief</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove a sticker</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reopen</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Replace</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Report a fault</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reset</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Resize sticker</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Retake</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Rice</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Right</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Rocket</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Rosette</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Round frame</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>SVG</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Samples</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Saturation and brightness</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save a copy</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save a still</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save as</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save as %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save here</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save still</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Saved</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Saved as %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Saving</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Screenshots</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Second photo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Send or keep</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sepia</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Set Color</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Shades</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Share</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Share it</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Shift</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show in folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Side by side</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sleepy</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Smile</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Snowflake</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Snowman</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Soft</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Space</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sparkles</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sprout</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Star</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Starting the camera…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stays in place</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Step %1 of %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sticker</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stickers</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Still</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Store raster graphics information.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Storm</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Strawberry</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Strength</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Suggested</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Suitcase</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sun</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sunflower</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Swap</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Swap it with its neighbour</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Swipe for the next photo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Swirl</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>TIFF</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>TIFF pages coded with JBIG can&apos;t be read</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>TIFF pictures need lamina-decoder, which is not installed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>TIFF pictures need libtiff</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tag</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Take a photo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Take it again</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Take out</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Take this folder out of the library? Its photos stay where they are.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Takes this color again</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tape</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ten frames</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tent</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>That didn’t work</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The arrow keys go to the next photo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The audio and video won’t function with the current export type. Try downloading the file as an MP4 video.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The blend</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The camera has stopped</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The clip was not saved</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The collage</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The collage has no place for %1 of the photos.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The collage has no place for one of the photos.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file, to the clipboard</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The finished picture</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The folder can’t be read.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The folder does not exist.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The photo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The photo is being changed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The photo is damaged</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The photo that you took</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The picture</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The picture, to the clipboard</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The still was not saved</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Their photos belong to the library, beside those in your own folder.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There is no room for %1 more photos.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There is no room for one more photo.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Thermometer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This is not a folder.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This list</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This one lies on top. Move it, zoom it, let the first one shine through.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This one stays in place. Pick something calm: a sky, a wall, the sea.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Three circles</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Three columns</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Three or six digits of 0 to 9 and A to F, such as #E5906F</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Three photos</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Three rows</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Toast</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Too many photos</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tools</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Transparent background</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Travel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tree</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Triangles from the top</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Triangles round the middle</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Try again</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tulip</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Turn a sticker or the photo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Turn and scale sticker</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Twinkle</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Two hearts</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Two photos</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Umbrella</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unable to find a camera on your device.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Under another name or place</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Undo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Up one folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Use in this work</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Use photo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Use the first photo again</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Use the photo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Waiting for the picture</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Warm</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Weather</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Wedge and zigzag</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Wedge in the corner</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Whale</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>What the camera sees</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>What you are working on stays open.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Where it was saved</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Wind</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Windows</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Wink</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>YES</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>You are not allowed to look into this folder.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Your Image has been saved in Photos.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Your Video has been saved in Photos</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Your folders are not shown to Lamina here. The photos that you choose in your system’s own window are.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Your system asks whether Lamina may use the camera.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Your work can’t be kept safe: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Zigzag columns</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Zigzag rows</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Zigzag, across</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Zigzag, upright</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Zoom</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>a BMP picture can&apos;t be larger than 2 GB</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>a GIF picture can&apos;t be longer than 65535 pixels</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>a JPEG picture can&apos;t be longer than 65500 pixels</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>a TIFF picture can&apos;t be larger than 4 GB</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>a composition can&apos;t be drawn at this size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>a movie&apos;s sides are from 1 to 16384</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>a part of it is missing or damaged</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>a screen is presented already</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>a secure connection could not be made</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>a symbolic link leads in a circle</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>a thumbnail has no such size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>access to the photo library is not given</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>another process is mending it</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>another still is being taken</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>brightness</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>camera photo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>can&apos;t be started</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>can&apos;t be written</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>cancelled</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>contrast</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>emboss</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>filter</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>fx</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>gallery</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>highlight</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>is a folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>is a link to another file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>is no profile of inks</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>is not written to its end</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>is the same file as </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>it can&apos;t be mended</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>it gives no picture</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>it is damaged again and again</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>it is open in another window</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>its original is no longer at hand</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>layout</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>longer than </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>movies of this type can&apos;t be written</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>nested too deep</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>no file was written</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>no program opens folders</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>no program takes it</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>no space left on the device</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>no such file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>no such folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>nobody writes to it</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>not JSON</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>not a JSON object</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>not a clip that can be read</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>not a picture</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>not a regular file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>not enough memory</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>nothing here reads the coding of the clip: </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>nothing of the movie lies in the range</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>nothing was recorded</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>numbers of sound come where packets were announced</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>opacity</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>or</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>packets of sound come where numbers were announced</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>pasted picture</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>permission denied</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>photo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>photos can’t be added to this album</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>pictures of the type &quot;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>reading has failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>reset</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>saturation</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>secure connections are not supported here</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>sharpen</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>something went wrong</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>sound of the codec </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>sticker</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>such a page can&apos;t be written</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>support for PDF can&apos;t be loaded</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>support for PDF is not installed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>support for SQLite can&apos;t be loaded</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>support for SQLite is not installed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>support for cameras can&apos;t be loaded</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>support for cameras is not installed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>support for videos can&apos;t be loaded</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>support for videos is not installed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the FFmpeg that is installed can&apos;t write AAC</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the FFmpeg that is installed can&apos;t write H.264</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the address leads from a secure connection to an open one</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the address leads on too often</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the address leads to something that is no web page or file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the answer can&apos;t be understood</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the answer ends too early</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the answer is too large</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the application is leaving</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the camera gives no picture</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the camera isn’t running</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the camera service stopped</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the camera was unplugged</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the clip holds no picture</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the clip is damaged</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the clip takes too long to be read</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the colour profile for print is damaged</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the colour profile for print is not installed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the device can only be read</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the document can&apos;t be made</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the download takes too long</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the file chooser named no file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the file ends too early</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the file holds no picture</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the file holds no sound</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the file holds no thumbnail</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the file is empty</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the file is in use</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the file is not on this device</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the file is too large</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the file is too large for the device</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the font Liberation Sans Bold is not installed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the microphone was unplugged</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the movie has begun already</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the movie has no tracks</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the movie is being read already</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the name is too long</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the picture can&apos;t be read: its decoder can&apos;t be started</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the picture can&apos;t be read: its decoder stopped</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the picture can&apos;t be read: its decoder took too long</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the picture can&apos;t be read: this system can&apos;t confine its decoder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the picture has no palette</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the picture is damaged</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the picture is damaged; it is shown as far as it goes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the picture is not in the colours of print</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the picture is too large</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the picture of the clip is too large</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the proxy doesn&apos;t let it through</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the screen to present stands somewhere else</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the server closed the connection</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the server doesn&apos;t answer any more</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the server refuses connections</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the server was not found</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the server&apos;s certificate belongs to another server</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the server&apos;s certificate can&apos;t be trusted</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the server&apos;s certificate comes from an unknown authority</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the server&apos;s certificate has expired</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the server&apos;s certificate is not valid yet</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the server&apos;s certificate is vouched for by nobody but itself</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the server&apos;s certificate was withdrawn</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the system has no more threads to give</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the thumbnail shows another picture</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the video can&apos;t be encoded</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the window is closed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>there are too many threads</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>there is no camera</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>there is no display to open a window on</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>there is no file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>there is no folder for temporary files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>there is no link</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>there is no movie to insert</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>there is no network</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>there is no picture</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>there is no picture in it</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>there is no picture in the movie</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>there is no screen to present</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>there is no such quality</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>there is something of that name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>this is no address of a web page or file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>this is no movie</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>this is no path</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>this is not the name of a file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>this kind of BMP compression can&apos;t be read</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>this kind of HEIC picture can&apos;t be read</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>this kind of JPEG is not supported</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>this kind of TIFF can&apos;t be read</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>to</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>today at %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>too many files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>too many files of this name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>too many requests are waiting</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>too many works are open</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>tools</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>unsharpen</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>vignette</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>yesterday at %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>“%1”</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>⚠️</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
