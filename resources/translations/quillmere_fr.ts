<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>DBrushSettings</name>
    <message>
        <source>Save</source>
        <translation>Enregistrer</translation>
    </message>
    <message>
        <source>Brush settings</source>
        <translation>Réglages de la brosse</translation>
    </message>
    <message>
        <source>Prefered settings</source>
        <translation>Réglages préférés</translation>
    </message>
    <message>
        <source>Engine parameters</source>
        <translation>Paramètres du moteur</translation>
    </message>
    <message>
        <source>Load brush texture</source>
        <translation>Charger une texture de brosse</translation>
    </message>
    <message>
        <source>Reset brush texture</source>
        <translation>Retirer la texture de brosse</translation>
    </message>
    <message>
        <source>Export brush texture</source>
        <translation>Exporter la texture de brosse</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
    <message>
        <source>Category</source>
        <translation>Catégorie</translation>
    </message>
    <message>
        <source>no texture</source>
        <translation>pas de texture</translation>
    </message>
    <message>
        <source>width: %1 - height: %2</source>
        <translation>largeur : %1 - hauteur : %2</translation>
    </message>
    <message>
        <source> - engine: %1</source>
        <translation> - moteur : %1</translation>
    </message>
    <message>
        <source>Brush texture</source>
        <translation>Texture de brosse</translation>
    </message>
    <message>
        <source>An error occured while loading the file.</source>
        <translation>Une erreur est survenue pendant le chargement du fichier.</translation>
    </message>
    <message>
        <source>Invalid image.</source>
        <translation>Image non valide.</translation>
    </message>
    <message>
        <source>The image background seems to be opaque. Do you want a transparent background? If no texure color will be preserved.</source>
        <translation>Le fond de l&apos;image semble opaque. Voulez-vous un fond transparent ? Sinon, la couleur de la texture sera conservée.</translation>
    </message>
    <message>
        <source>Reset texture</source>
        <translation>Retirer la texture</translation>
    </message>
    <message>
        <source>This brush has no texture.</source>
        <translation>Cette brosse n&apos;a pas de texture.</translation>
    </message>
    <message>
        <source>Are you sure you want to remove brush texture?</source>
        <translation>Voulez-vous vraiment retirer la texture de la brosse ?</translation>
    </message>
    <message>
        <source>Save texture</source>
        <translation>Enregistrer la texture</translation>
    </message>
    <message>
        <source>An error occured while saving the file.</source>
        <translation>Une erreur est survenue pendant l&apos;enregistrement du fichier.</translation>
    </message>
    <message>
        <source>No texture to save!</source>
        <translation>Aucune texture à enregistrer !</translation>
    </message>
    <message>
        <source>PNG image (*.png)</source>
        <translation>Image PNG (*.png)</translation>
    </message>
    <message>
        <source>This file exists. Do you want to replace it?</source>
        <translation>Ce fichier existe. Voulez-vous le remplacer ?</translation>
    </message>
    <message>
        <source>Brush</source>
        <translation>Brosse</translation>
    </message>
    <message>
        <source>File saved.</source>
        <translation>Fichier enregistré.</translation>
    </message>
    <message>
        <source>The brush has been modified.</source>
        <translation>La brosse a été modifiée.</translation>
    </message>
    <message>
        <source>If you do not save, the changes will be discarded at next application startup.</source>
        <translation>Si vous n&apos;enregistrez pas, les modifications seront perdues au prochain démarrage.</translation>
    </message>
    <message>
        <source>Keep changes but do not save</source>
        <translation>Garder les modifications sans enregistrer</translation>
    </message>
    <message>
        <source>Discard and close</source>
        <translation>Abandonner et fermer</translation>
    </message>
    <message>
        <source>Don&apos;t close</source>
        <translation>Ne pas fermer</translation>
    </message>
</context>
<context>
    <name>DCurveEditor</name>
    <message>
        <source>Add curve</source>
        <translation>Ajouter une courbe</translation>
    </message>
    <message>
        <source>Remove curve</source>
        <translation>Supprimer la courbe</translation>
    </message>
    <message>
        <source>Add point</source>
        <translation>Ajouter un point</translation>
    </message>
    <message>
        <source>Remove point</source>
        <translation>Supprimer le point</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Réinitialiser</translation>
    </message>
    <message>
        <source>Invert x</source>
        <translation>Inverser x</translation>
    </message>
    <message>
        <source>Invert y</source>
        <translation>Inverser y</translation>
    </message>
    <message>
        <source>Ok</source>
        <translation>Ok</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>x min</source>
        <translation>x min</translation>
    </message>
    <message>
        <source>x max</source>
        <translation>x max</translation>
    </message>
    <message>
        <source>y min</source>
        <translation>y min</translation>
    </message>
    <message>
        <source>y max</source>
        <translation>y max</translation>
    </message>
    <message>
        <source>Modulo</source>
        <translation>Modulo</translation>
    </message>
    <message>
        <source>Preset</source>
        <translation>Préréglage</translation>
    </message>
    <message>
        <source>Formula</source>
        <translation>Formule</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
    <message>
        <source>Do you want to save modifications?</source>
        <translation>Voulez-vous enregistrer les modifications ?</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Enregistrer</translation>
    </message>
    <message>
        <source>Dont&apos; save</source>
        <translation>Ne pas enregistrer</translation>
    </message>
</context>
<context>
    <name>DLayerEdit</name>
    <message>
        <source>Layer properties</source>
        <translation>Propriétés du calque</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Nom</translation>
    </message>
    <message>
        <source>Opacity</source>
        <translation>Opacité</translation>
    </message>
    <message>
        <source>Visible</source>
        <translation>Visible</translation>
    </message>
    <message>
        <source>Locked</source>
        <translation>Verrouillé</translation>
    </message>
    <message>
        <source>Mask</source>
        <translation>Masque</translation>
    </message>
    <message>
        <source>Ok</source>
        <translation>Ok</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
</context>
<context>
    <name>DSettings</name>
    <message>
        <source>Settings</source>
        <translation>Paramètres</translation>
    </message>
    <message>
        <source>Ok</source>
        <translation>Ok</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>English</source>
        <translation>Anglais</translation>
    </message>
    <message>
        <source>French</source>
        <translation>Français</translation>
    </message>
    <message>
        <source>edit</source>
        <translation>modifier</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Rechercher</translation>
    </message>
    <message>
        <source>Description</source>
        <translation>Description</translation>
    </message>
    <message>
        <source>Shortcut</source>
        <translation>Raccourci</translation>
    </message>
    <message>
        <source>Edit</source>
        <translation>Modifier</translation>
    </message>
    <message>
        <source>Edit the shortcut.</source>
        <translation>Modifier le raccourci.</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Réinitialiser</translation>
    </message>
    <message>
        <source>Reset the shortcut to the default shortcut.</source>
        <translation>Remettre le raccourci par défaut.</translation>
    </message>
    <message>
        <source>Reset all</source>
        <translation>Tout réinitialiser</translation>
    </message>
    <message>
        <source>Reset all the shortcuts to the default shortcuts.</source>
        <translation>Remettre tous les raccourcis par défaut.</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Copier</translation>
    </message>
    <message>
        <source>Copy the table to clipboard, paste it in something like excel and print it to get a shortcut list sheet.</source>
        <translation>Copier le tableau dans le presse-papiers : collez-le dans un tableur et imprimez-le pour obtenir une fiche des raccourcis.</translation>
    </message>
    <message>
        <source>The shortcut %1 already exists for action &apos;%2&apos;. Do you want to replace it?</source>
        <translation>Le raccourci %1 existe déjà pour l&apos;action « %2 ». Voulez-vous le remplacer ?</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Effacer</translation>
    </message>
</context>
<context>
    <name>DShaderParams</name>
    <message>
        <source>Effect settings</source>
        <translation>Réglages de l&apos;effet</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Aperçu</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Retirer</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>Appliquer</translation>
    </message>
    <message>
        <source>Apply the effect to layer. You can remove the effect later.</source>
        <translation>Appliquer l&apos;effet au calque. Vous pourrez le retirer plus tard.</translation>
    </message>
</context>
<context>
    <name>DSortList</name>
    <message>
        <source>Sort brush list</source>
        <translation>Trier la liste des brosses</translation>
    </message>
    <message>
        <source>&gt;&gt;</source>
        <translation>&gt;&gt;</translation>
    </message>
    <message>
        <source>&lt;&lt;</source>
        <translation>&lt;&lt;</translation>
    </message>
    <message>
        <source>Move up</source>
        <translation>Monter</translation>
    </message>
    <message>
        <source>Move down</source>
        <translation>Descendre</translation>
    </message>
    <message>
        <source>Move at top</source>
        <translation>Tout en haut</translation>
    </message>
    <message>
        <source>Move at bottom</source>
        <translation>Tout en bas</translation>
    </message>
    <message>
        <source>Ok</source>
        <translation>Ok</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>system</source>
        <translation>système</translation>
    </message>
    <message>
        <source>user</source>
        <translation>utilisateur</translation>
    </message>
</context>
<context>
    <name>DTextureParam</name>
    <message>
        <source>Texture shader parameter</source>
        <translation>Paramètre de texture du shader</translation>
    </message>
    <message>
        <source>Browse for the texture file</source>
        <translation>Choisir le fichier de texture</translation>
    </message>
    <message>
        <source>Insert a path variable</source>
        <translation>Insérer une variable de chemin</translation>
    </message>
    <message>
        <source>Var name</source>
        <translation>Nom de variable</translation>
    </message>
    <message>
        <source>File name</source>
        <translation>Nom de fichier</translation>
    </message>
    <message>
        <source>Min filter</source>
        <translation>Filtre de réduction</translation>
    </message>
    <message>
        <source>Mag filter</source>
        <translation>Filtre d&apos;agrandissement</translation>
    </message>
    <message>
        <source>Wrap s</source>
        <translation>Répétition s</translation>
    </message>
    <message>
        <source>Wrap t</source>
        <translation>Répétition t</translation>
    </message>
    <message>
        <source>Ok</source>
        <translation>Ok</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>The variable name must begin with a letter or &quot;_&quot; and hold only letters, digits and &quot;_&quot;.</source>
        <translation>Le nom de variable doit commencer par une lettre ou « _ » et ne contenir que des lettres, des chiffres et « _ ».</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is a word of the parameter language and can&apos;t name a texture.</source>
        <translation>« %1 » est un mot du langage des paramètres et ne peut pas nommer une texture.</translation>
    </message>
    <message>
        <source>Names beginning with &quot;gl_&quot; are reserved by OpenGL.</source>
        <translation>Les noms commençant par « gl_ » sont réservés par OpenGL.</translation>
    </message>
    <message>
        <source>The file name can&apos;t hold both single and double quotes.</source>
        <translation>Le nom de fichier ne peut pas contenir à la fois des apostrophes et des guillemets.</translation>
    </message>
    <message>
        <source>The file name must be on one line.</source>
        <translation>Le nom de fichier doit tenir sur une ligne.</translation>
    </message>
    <message>
        <source>Texture file</source>
        <translation>Fichier de texture</translation>
    </message>
    <message>
        <source>Images (*.png *.jpg *.jpeg *.bmp *.tif *.tiff *.webp);;All files (*)</source>
        <translation>Images (*.png *.jpg *.jpeg *.bmp *.tif *.tiff *.webp);;Tous les fichiers (*)</translation>
    </message>
</context>
<context>
    <name>Enum</name>
    <message>
        <source>Transparent</source>
        <translation>Transparent</translation>
    </message>
    <message>
        <source>Colored</source>
        <translation>Couleur unie</translation>
    </message>
    <message>
        <source>Paper</source>
        <translation>Papier</translation>
    </message>
    <message>
        <source>PixelsPerInch</source>
        <translation>Pixels par pouce</translation>
    </message>
    <message>
        <source>PixelsPerCentimeter</source>
        <translation>Pixels par centimètre</translation>
    </message>
    <message>
        <source>LeftEdge</source>
        <translation>Bord gauche</translation>
    </message>
    <message>
        <source>TopEdge</source>
        <translation>Bord haut</translation>
    </message>
    <message>
        <source>RightEdge</source>
        <translation>Bord droit</translation>
    </message>
    <message>
        <source>BottomEdge</source>
        <translation>Bord bas</translation>
    </message>
    <message>
        <source>EllipseShape</source>
        <translation>Ellipse</translation>
    </message>
    <message>
        <source>RectangleShape</source>
        <translation>Rectangle</translation>
    </message>
    <message>
        <source>ConstantAngle</source>
        <translation>Angle constant</translation>
    </message>
    <message>
        <source>FollowDirectionAngle</source>
        <translation>Angle suivant la direction</translation>
    </message>
    <message>
        <source>AutoSpacing</source>
        <translation>Espacement automatique</translation>
    </message>
    <message>
        <source>RatioSpacing</source>
        <translation>Espacement proportionnel</translation>
    </message>
    <message>
        <source>ConstantSpacing</source>
        <translation>Espacement constant</translation>
    </message>
    <message>
        <source>Antialiasing</source>
        <translation>Anticrénelage</translation>
    </message>
    <message>
        <source>NoAntialiasing</source>
        <translation>Sans anticrénelage</translation>
    </message>
    <message>
        <source>Smoothing</source>
        <translation>Lissage</translation>
    </message>
    <message>
        <source>NoMask</source>
        <translation>Sans masque</translation>
    </message>
    <message>
        <source>AlphaMask</source>
        <translation>Masque alpha</translation>
    </message>
    <message>
        <source>OneMinusAlphaMask</source>
        <translation>Masque alpha inversé</translation>
    </message>
</context>
<context>
    <name>MApplication</name>
    <message>
        <source>translation loaded...</source>
        <translation>traduction chargée...</translation>
    </message>
    <message>
        <source>Can&apos;t run Quillmere: your graphic card driver is not supported.</source>
        <translation>Impossible de lancer Quillmere : le pilote de votre carte graphique n&apos;est pas pris en charge.</translation>
    </message>
    <message>
        <source>effects loaded: %1</source>
        <translation>effets chargés : %1</translation>
    </message>
    <message>
        <source>brushes loaded: %1</source>
        <translation>brosses chargées : %1</translation>
    </message>
</context>
<context>
    <name>MBrush</name>
    <message>
        <source>New brush</source>
        <translation>Nouvelle brosse</translation>
    </message>
</context>
<context>
    <name>MBrushInputInfoList</name>
    <message>
        <source>Pressure</source>
        <translation>Pression</translation>
    </message>
    <message>
        <source>Stylus pressure</source>
        <translation>Pression du stylet</translation>
    </message>
    <message>
        <source>Tangential pressure</source>
        <translation>Pression tangentielle</translation>
    </message>
    <message>
        <source>Stylus tangential pressure</source>
        <translation>Pression tangentielle du stylet</translation>
    </message>
    <message>
        <source>X tilt</source>
        <translation>Inclinaison X</translation>
    </message>
    <message>
        <source>Y tilt</source>
        <translation>Inclinaison Y</translation>
    </message>
    <message>
        <source>Position x</source>
        <translation>Position x</translation>
    </message>
    <message>
        <source>Position y</source>
        <translation>Position y</translation>
    </message>
    <message>
        <source>Direction x</source>
        <translation>Direction x</translation>
    </message>
    <message>
        <source>Direction y</source>
        <translation>Direction y</translation>
    </message>
    <message>
        <source>Speed</source>
        <translation>Vitesse</translation>
    </message>
    <message>
        <source>Time to previous</source>
        <translation>Temps depuis le point précédent</translation>
    </message>
    <message>
        <source>Time elapsed between two inputs of a stroke (ms)</source>
        <translation>Temps écoulé entre deux points d&apos;un trait (ms)</translation>
    </message>
    <message>
        <source>Total time</source>
        <translation>Temps total</translation>
    </message>
    <message>
        <source>Time elapsed since the start of a stroke (ms)</source>
        <translation>Temps écoulé depuis le début d&apos;un trait (ms)</translation>
    </message>
    <message>
        <source>Distance to previous</source>
        <translation>Distance au point précédent</translation>
    </message>
    <message>
        <source>Distance travelled by the stylus or mouse between two inputs of a stroke (px)</source>
        <translation>Distance parcourue par le stylet ou la souris entre deux points d&apos;un trait (px)</translation>
    </message>
    <message>
        <source>Total distance</source>
        <translation>Distance totale</translation>
    </message>
    <message>
        <source>Distance travelled by the stylus or mouse since the start of stroke (px)</source>
        <translation>Distance parcourue par le stylet ou la souris depuis le début du trait (px)</translation>
    </message>
    <message>
        <source>Random number</source>
        <translation>Nombre aléatoire</translation>
    </message>
    <message>
        <source>Random number generated at each stamp (between 0 and 1)</source>
        <translation>Nombre aléatoire tiré à chaque empreinte (entre 0 et 1)</translation>
    </message>
</context>
<context>
    <name>MBrushListWidget</name>
    <message>
        <source>Edit settings</source>
        <translation>Modifier les réglages</translation>
    </message>
    <message>
        <source>Reset settings</source>
        <translation>Rétablir les réglages</translation>
    </message>
</context>
<context>
    <name>MBrushTool</name>
    <message>
        <source>Follow path</source>
        <translation>Suivre le tracé</translation>
    </message>
    <message>
        <source>Symmetry brush stroke: %1, %2</source>
        <translation>Coup de pinceau symétrique : %1, %2</translation>
    </message>
    <message>
        <source>Brush radius: %1 px.</source>
        <translation>Rayon du pinceau : %1 px.</translation>
    </message>
</context>
<context>
    <name>MCanvas</name>
    <message>
        <source>new document %1.%2</source>
        <translation>nouveau document %1.%2</translation>
    </message>
    <message>
        <source>Remove layers</source>
        <translation>Supprimer les calques</translation>
    </message>
    <message>
        <source>Set canvas size: %1, %2</source>
        <translation>Définir la taille du canevas : %1, %2</translation>
    </message>
    <message>
        <source>Duplicate layer</source>
        <translation>Dupliquer le calque</translation>
    </message>
    <message>
        <source>Merge layer</source>
        <translation>Fusionner le calque</translation>
    </message>
    <message>
        <source>Apply effect %1</source>
        <translation>Appliquer l&apos;effet %1</translation>
    </message>
    <message>
        <source>Paste an image</source>
        <translation>Coller une image</translation>
    </message>
    <message>
        <source>Append an image</source>
        <translation>Ajouter une image</translation>
    </message>
    <message>
        <source>Layer %1</source>
        <translation>Calque %1</translation>
    </message>
    <message>
        <source>Append a layer</source>
        <translation>Ajouter un calque</translation>
    </message>
    <message>
        <source>Fill tile with color</source>
        <translation>Remplir la tuile avec la couleur</translation>
    </message>
    <message>
        <source>Layer down</source>
        <translation>Descendre le calque</translation>
    </message>
    <message>
        <source>Layer up</source>
        <translation>Monter le calque</translation>
    </message>
    <message>
        <source>Prepend a layer</source>
        <translation>Insérer un calque en bas</translation>
    </message>
    <message>
        <source>Remove layer</source>
        <translation>Supprimer le calque</translation>
    </message>
    <message>
        <source>Resize painted rectangle: %1, %2</source>
        <translation>Redimensionner le rectangle peint : %1, %2</translation>
    </message>
    <message>
        <source>Layer property change</source>
        <translation>Modification des propriétés du calque</translation>
    </message>
    <message>
        <source>Update tile</source>
        <translation>Mettre à jour la tuile</translation>
    </message>
    <message>
        <source>Fill tile</source>
        <translation>Remplir la tuile</translation>
    </message>
    <message>
        <source>Brush stroke</source>
        <translation>Coup de pinceau</translation>
    </message>
    <message>
        <source>Draw line</source>
        <translation>Tracer une ligne</translation>
    </message>
</context>
<context>
    <name>MColorEdit</name>
    <message>
        <source>Choose a color</source>
        <translation>Choisir une couleur</translation>
    </message>
</context>
<context>
    <name>MEndStrokeRunner</name>
    <message>
        <source>Brush stroke: %1, %2</source>
        <translation>Coup de pinceau : %1, %2</translation>
    </message>
</context>
<context>
    <name>MFieldPanel</name>
    <message>
        <source>Edit dynamic settings</source>
        <translation>Modifier les réglages dynamiques</translation>
    </message>
</context>
<context>
    <name>MFileNameEdit</name>
    <message>
        <source>Images (*.png *.jpg *.jpeg *.bmp *.tif *.tiff *.webp);;All files (*)</source>
        <translation>Images (*.png *.jpg *.jpeg *.bmp *.tif *.tiff *.webp);;Tous les fichiers (*)</translation>
    </message>
    <message>
        <source>Browse for a file</source>
        <translation>Choisir un fichier</translation>
    </message>
    <message>
        <source>Choose a file</source>
        <translation>Choisir un fichier</translation>
    </message>
</context>
<context>
    <name>MFileUtility</name>
    <message>
        <source>%1 files</source>
        <translation>Fichiers %1</translation>
    </message>
    <message>
        <source>All files (*.*)</source>
        <translation>Tous les fichiers (*.*)</translation>
    </message>
    <message>
        <source>WaveFront object files (*.obj)</source>
        <translation>Fichiers objet WaveFront (*.obj)</translation>
    </message>
    <message>
        <source>Black &amp; White</source>
        <translation>Noir et blanc</translation>
    </message>
    <message>
        <source>Encapsulated Postscript</source>
        <translation>PostScript encapsulé</translation>
    </message>
    <message>
        <source>Encapsulated PostScript Interchange</source>
        <translation>PostScript encapsulé d&apos;échange</translation>
    </message>
    <message>
        <source>OpenEXR</source>
        <translation>OpenEXR</translation>
    </message>
    <message>
        <source>PC Paintbrush Exchange</source>
        <translation>PC Paintbrush Exchange</translation>
    </message>
    <message>
        <source>Photoshop Document</source>
        <translation>Document Photoshop</translation>
    </message>
    <message>
        <source>Raw red, green, and blue samples</source>
        <translation>Échantillons bruts rouge, vert et bleu</translation>
    </message>
    <message>
        <source>Raw red, green, blue, and alpha samples</source>
        <translation>Échantillons bruts rouge, vert, bleu et alpha</translation>
    </message>
    <message>
        <source>Irix RGB</source>
        <translation>RVB Irix</translation>
    </message>
    <message>
        <source>Truevision Targa</source>
        <translation>Truevision Targa</translation>
    </message>
    <message>
        <source>eXperimental Computing Facility (GIMP)</source>
        <translation>eXperimental Computing Facility (GIMP)</translation>
    </message>
    <message>
        <source>DirectDraw Surface</source>
        <translation>Surface DirectDraw</translation>
    </message>
    <message>
        <source>Khoros Visualization</source>
        <translation>Visualisation Khoros</translation>
    </message>
    <message>
        <source>Windows Bitmap</source>
        <translation>Bitmap Windows</translation>
    </message>
    <message>
        <source>Graphic Interchange Format</source>
        <translation>Graphic Interchange Format</translation>
    </message>
    <message>
        <source>Joint Photographic Experts Group</source>
        <translation>Joint Photographic Experts Group</translation>
    </message>
    <message>
        <source>Joint Photographic Experts Group 2000</source>
        <translation>Joint Photographic Experts Group 2000</translation>
    </message>
    <message>
        <source>Multiple-image Network Graphics</source>
        <translation>Multiple-image Network Graphics</translation>
    </message>
    <message>
        <source>Portable Network Graphics</source>
        <translation>Portable Network Graphics</translation>
    </message>
    <message>
        <source>Portable Bitmap</source>
        <translation>Bitmap portable</translation>
    </message>
    <message>
        <source>Portable Graymap</source>
        <translation>Niveaux de gris portable</translation>
    </message>
    <message>
        <source>Portable Pixmap</source>
        <translation>Pixmap portable</translation>
    </message>
    <message>
        <source>Tagged Image File Format</source>
        <translation>Tagged Image File Format</translation>
    </message>
    <message>
        <source>X11 Bitmap</source>
        <translation>Bitmap X11</translation>
    </message>
    <message>
        <source>X11 Pixmap</source>
        <translation>Pixmap X11</translation>
    </message>
    <message>
        <source>Icon Image</source>
        <translation>Image d&apos;icône</translation>
    </message>
    <message>
        <source>Scalable Vector Graphics</source>
        <translation>Graphiques vectoriels adaptables</translation>
    </message>
    <message>
        <source>Wireless Application Protocol Bitmap</source>
        <translation>Bitmap WAP</translation>
    </message>
    <message>
        <source>WebP</source>
        <translation>WebP</translation>
    </message>
    <message>
        <source>All image files</source>
        <translation>Tous les fichiers image</translation>
    </message>
    <message>
        <source>First %1 execution.</source>
        <translation>Première exécution de %1.</translation>
    </message>
    <message>
        <source>%1 is configuring installation, please wait.</source>
        <translation>%1 configure l&apos;installation, veuillez patienter.</translation>
    </message>
    <message>
        <source>Processing %3: file %1 of %2 </source>
        <translation>Traitement de %3 : fichier %1 sur %2 </translation>
    </message>
</context>
<context>
    <name>MFillCanvasRunner</name>
    <message>
        <source>Clear</source>
        <translation>Effacer</translation>
    </message>
</context>
<context>
    <name>MLayer</name>
    <message>
        <source>Layer</source>
        <translation>Calque</translation>
    </message>
</context>
<context>
    <name>MMainWindow</name>
    <message>
        <source>&lt;empty&gt;</source>
        <translation>&lt;vide&gt;</translation>
    </message>
    <message>
        <source>new-document</source>
        <translation>nouveau-document</translation>
    </message>
    <message>
        <source>%1 - </source>
        <translation>%1 - </translation>
    </message>
    <message>
        <source>Modified</source>
        <translation>Modifié</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
    <message>
        <source>Do you want to save modifications?</source>
        <translation>Voulez-vous enregistrer les modifications ?</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Enregistrer</translation>
    </message>
    <message>
        <source>Dont&apos; save</source>
        <translation>Ne pas enregistrer</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>%1 files</source>
        <translation>Fichiers %1</translation>
    </message>
    <message>
        <source>File Error</source>
        <translation>Erreur de fichier</translation>
    </message>
    <message>
        <source>Error saving to the file: file name is empty</source>
        <translation>Erreur d&apos;enregistrement du fichier : le nom du fichier est vide</translation>
    </message>
    <message>
        <source>Cannot save file %1.</source>
        <translation>Impossible d&apos;enregistrer le fichier %1.</translation>
    </message>
    <message>
        <source>Cannot open file %1.</source>
        <translation>Impossible d&apos;ouvrir le fichier %1.</translation>
    </message>
    <message>
        <source>Open file</source>
        <translation>Ouvrir un fichier</translation>
    </message>
    <message>
        <source>Import image file</source>
        <translation>Importer un fichier image</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Paramètres</translation>
    </message>
    <message>
        <source>Some changes take effect after a restart. Restart now?</source>
        <translation>Certaines modifications prennent effet après un redémarrage. Redémarrer maintenant ?</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>Coller</translation>
    </message>
    <message>
        <source>About Quillmere</source>
        <translation>À propos de Quillmere</translation>
    </message>
    <message>
        <source>&lt;h3&gt;Quillmere %1&lt;/h3&gt;&lt;p&gt;A painting program for a stylus or a mouse, where every pixel lives on the graphics card and brushes and effects are programs you can write.&lt;/p&gt;</source>
        <translation>&lt;h3&gt;Quillmere %1&lt;/h3&gt;&lt;p&gt;Un logiciel de peinture pour stylet ou souris, où chaque pixel vit sur la carte graphique et où brosses et effets sont des programmes que vous pouvez écrire.&lt;/p&gt;</translation>
    </message>
    <message>
        <source>Open file...</source>
        <translation>Ouvrir un fichier...</translation>
    </message>
    <message>
        <source>Save file</source>
        <translation>Enregistrer</translation>
    </message>
    <message>
        <source>Save file as...</source>
        <translation>Enregistrer sous...</translation>
    </message>
    <message>
        <source>New file</source>
        <translation>Nouveau fichier</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Quitter</translation>
    </message>
    <message>
        <source>Reset canvas position</source>
        <translation>Réinitialiser la position du canevas</translation>
    </message>
    <message>
        <source>Adjust to width</source>
        <translation>Ajuster à la largeur</translation>
    </message>
    <message>
        <source>Adjust to height</source>
        <translation>Ajuster à la hauteur</translation>
    </message>
    <message>
        <source>View all canvas</source>
        <translation>Voir tout le canevas</translation>
    </message>
    <message>
        <source>Window transparency (on/off)</source>
        <translation>Transparence de la fenêtre (oui/non)</translation>
    </message>
    <message>
        <source>Increase window transparency</source>
        <translation>Augmenter la transparence de la fenêtre</translation>
    </message>
    <message>
        <source>Decrease window transparency</source>
        <translation>Diminuer la transparence de la fenêtre</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Rétablir</translation>
    </message>
    <message>
        <source>Export as image</source>
        <translation>Exporter en image</translation>
    </message>
    <message>
        <source>Edit effect</source>
        <translation>Modifier l&apos;effet</translation>
    </message>
    <message>
        <source>Brush</source>
        <translation>Brosse</translation>
    </message>
    <message>
        <source>Selection</source>
        <translation>Sélection</translation>
    </message>
    <message>
        <source>Color picker</source>
        <translation>Pipette</translation>
    </message>
    <message>
        <source>Shape</source>
        <translation>Forme</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Texte</translation>
    </message>
    <message>
        <source>Symmetry</source>
        <translation>Symétrie</translation>
    </message>
    <message>
        <source>Grid</source>
        <translation>Grille</translation>
    </message>
    <message>
        <source>Line</source>
        <translation>Ligne</translation>
    </message>
    <message>
        <source>Image</source>
        <translation>Image</translation>
    </message>
    <message>
        <source>Fill selection</source>
        <translation>Remplir la sélection</translation>
    </message>
    <message>
        <source>Stroke selection</source>
        <translation>Tracer la sélection</translation>
    </message>
    <message>
        <source>Reset selection</source>
        <translation>Annuler la sélection</translation>
    </message>
    <message>
        <source>Invert selection</source>
        <translation>Inverser la sélection</translation>
    </message>
    <message>
        <source>Reset brush settings</source>
        <translation>Réinitialiser les réglages de la brosse</translation>
    </message>
    <message>
        <source>Sort brushes</source>
        <translation>Trier les brosses</translation>
    </message>
    <message>
        <source>Lock brush control points</source>
        <translation>Verrouiller les points de contrôle de la brosse</translation>
    </message>
    <message>
        <source>Add layer at top</source>
        <translation>Ajouter un calque en haut</translation>
    </message>
    <message>
        <source>Edit layer</source>
        <translation>Modifier le calque</translation>
    </message>
    <message>
        <source>Remove layer</source>
        <translation>Supprimer le calque</translation>
    </message>
    <message>
        <source>Duplicate layer</source>
        <translation>Dupliquer le calque</translation>
    </message>
    <message>
        <source>Show/Hide layer</source>
        <translation>Afficher/masquer le calque</translation>
    </message>
    <message>
        <source>Lock/Unlock layer</source>
        <translation>Verrouiller/déverrouiller le calque</translation>
    </message>
    <message>
        <source>Show all layers</source>
        <translation>Afficher tous les calques</translation>
    </message>
    <message>
        <source>Hide all layers</source>
        <translation>Masquer tous les calques</translation>
    </message>
    <message>
        <source>Lock all layers</source>
        <translation>Verrouiller tous les calques</translation>
    </message>
    <message>
        <source>Unlock all layers</source>
        <translation>Déverrouiller tous les calques</translation>
    </message>
    <message>
        <source>Next layer</source>
        <translation>Calque suivant</translation>
    </message>
    <message>
        <source>Previous layer</source>
        <translation>Calque précédent</translation>
    </message>
    <message>
        <source>Merge with lower</source>
        <translation>Fusionner avec le calque inférieur</translation>
    </message>
    <message>
        <source>Move up</source>
        <translation>Monter</translation>
    </message>
    <message>
        <source>Move down</source>
        <translation>Descendre</translation>
    </message>
    <message>
        <source>Add a layer at bottom</source>
        <translation>Ajouter un calque en bas</translation>
    </message>
    <message>
        <source>Remove empty layers</source>
        <translation>Supprimer les calques vides</translation>
    </message>
    <message>
        <source>Show/hide preview</source>
        <translation>Afficher/masquer l&apos;aperçu</translation>
    </message>
    <message>
        <source>Remove preview</source>
        <translation>Supprimer l&apos;aperçu</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Copier</translation>
    </message>
    <message>
        <source>Cut</source>
        <translation>Couper</translation>
    </message>
    <message>
        <source>Paste in new layer</source>
        <translation>Coller dans un nouveau calque</translation>
    </message>
    <message>
        <source>Change paper</source>
        <translation>Changer de papier</translation>
    </message>
    <message>
        <source>Increase paper size</source>
        <translation>Agrandir le papier</translation>
    </message>
    <message>
        <source>Decrease paper size</source>
        <translation>Réduire le papier</translation>
    </message>
    <message>
        <source>Adjust paper to selection</source>
        <translation>Ajuster le papier à la sélection</translation>
    </message>
    <message>
        <source>Restore default layout</source>
        <translation>Rétablir la disposition par défaut</translation>
    </message>
    <message>
        <source>Edit brush quick settings</source>
        <translation>Modifier les réglages rapides de la brosse</translation>
    </message>
    <message>
        <source>Select all</source>
        <translation>Tout sélectionner</translation>
    </message>
    <message>
        <source>Next selection</source>
        <translation>Sélection suivante</translation>
    </message>
    <message>
        <source>Previous selection</source>
        <translation>Sélection précédente</translation>
    </message>
    <message>
        <source>Perspective</source>
        <translation>Perspective</translation>
    </message>
    <message>
        <source>Full screen</source>
        <translation>Plein écran</translation>
    </message>
    <message>
        <source>Eraser mode</source>
        <translation>Mode gomme</translation>
    </message>
    <message>
        <source>Fill</source>
        <translation>Remplissage</translation>
    </message>
    <message>
        <source>Flip horizontal</source>
        <translation>Retourner horizontalement</translation>
    </message>
    <message>
        <source>Flip vertical</source>
        <translation>Retourner verticalement</translation>
    </message>
    <message>
        <source>Help index</source>
        <translation>Index de l&apos;aide</translation>
    </message>
    <message>
        <source>Online help</source>
        <translation>Aide en ligne</translation>
    </message>
    <message>
        <source>Contact us</source>
        <translation>Nous contacter</translation>
    </message>
    <message>
        <source>Check updates</source>
        <translation>Rechercher des mises à jour</translation>
    </message>
    <message>
        <source>Print</source>
        <translation>Imprimer</translation>
    </message>
    <message>
        <source>Properties</source>
        <translation>Propriétés</translation>
    </message>
    <message>
        <source>Import image file...</source>
        <translation>Importer un fichier image...</translation>
    </message>
    <message>
        <source>New effect</source>
        <translation>Nouvel effet</translation>
    </message>
    <message>
        <source>Delete effect</source>
        <translation>Supprimer l&apos;effet</translation>
    </message>
    <message>
        <source>Duplicate effect</source>
        <translation>Dupliquer l&apos;effet</translation>
    </message>
    <message>
        <source>Preview effect</source>
        <translation>Aperçu de l&apos;effet</translation>
    </message>
    <message>
        <source>Apply effect</source>
        <translation>Appliquer l&apos;effet</translation>
    </message>
    <message>
        <source>Magic wand</source>
        <translation>Baguette magique</translation>
    </message>
    <message>
        <source>Gradient</source>
        <translation>Dégradé</translation>
    </message>
    <message>
        <source>Restart application</source>
        <translation>Redémarrer l&apos;application</translation>
    </message>
    <message>
        <source>Increase brush radius</source>
        <translation>Augmenter le rayon de la brosse</translation>
    </message>
    <message>
        <source>Decrease brush radius</source>
        <translation>Diminuer le rayon de la brosse</translation>
    </message>
    <message>
        <source>Time line</source>
        <translation>Ligne de temps</translation>
    </message>
    <message>
        <source>Clear color history</source>
        <translation>Effacer l&apos;historique des couleurs</translation>
    </message>
    <message>
        <source>New brush</source>
        <translation>Nouvelle brosse</translation>
    </message>
    <message>
        <source>Delete brush</source>
        <translation>Supprimer la brosse</translation>
    </message>
    <message>
        <source>Duplicate brush</source>
        <translation>Dupliquer la brosse</translation>
    </message>
    <message>
        <source>Edit brush settings</source>
        <translation>Modifier les réglages de la brosse</translation>
    </message>
    <message>
        <source>Import brush file</source>
        <translation>Importer un fichier de brosse</translation>
    </message>
    <message>
        <source>Restore brush to system default</source>
        <translation>Rétablir la brosse du système</translation>
    </message>
    <message>
        <source>Copy brush to system directory</source>
        <translation>Copier la brosse dans le dossier système</translation>
    </message>
    <message>
        <source>Remove brush from system directory</source>
        <translation>Retirer la brosse du dossier système</translation>
    </message>
    <message>
        <source>Rename brush</source>
        <translation>Renommer la brosse</translation>
    </message>
    <message>
        <source>Set brush engine</source>
        <translation>Choisir le moteur de brosse</translation>
    </message>
    <message>
        <source>Reset brush engine</source>
        <translation>Réinitialiser le moteur de brosse</translation>
    </message>
    <message>
        <source>New brush engine</source>
        <translation>Nouveau moteur de brosse</translation>
    </message>
    <message>
        <source>Edit brush engine</source>
        <translation>Modifier le moteur de brosse</translation>
    </message>
    <message>
        <source>Duplicate brush engine</source>
        <translation>Dupliquer le moteur de brosse</translation>
    </message>
    <message>
        <source>Delete brush engine</source>
        <translation>Supprimer le moteur de brosse</translation>
    </message>
    <message>
        <source>Texture generator</source>
        <translation>Générateur de textures</translation>
    </message>
    <message>
        <source>Load brush texture</source>
        <translation>Charger une texture de brosse</translation>
    </message>
    <message>
        <source>Edit layer effect</source>
        <translation>Modifier l&apos;effet du calque</translation>
    </message>
    <message>
        <source>Generate help</source>
        <translation>Générer l&apos;aide</translation>
    </message>
    <message>
        <source>Rename effect</source>
        <translation>Renommer l&apos;effet</translation>
    </message>
    <message>
        <source>Rename brush engine</source>
        <translation>Renommer le moteur de brosse</translation>
    </message>
    <message>
        <source>Import effect</source>
        <translation>Importer un effet</translation>
    </message>
    <message>
        <source>Color converter</source>
        <translation>Convertisseur de couleurs</translation>
    </message>
    <message>
        <source>Comic strip</source>
        <translation>Bande dessinée</translation>
    </message>
    <message>
        <source>Pan</source>
        <translation>Déplacer la vue</translation>
    </message>
    <message>
        <source>Rotate</source>
        <translation>Pivoter</translation>
    </message>
    <message>
        <source>Zoom</source>
        <translation>Zoom</translation>
    </message>
    <message>
        <source>Ruler</source>
        <translation>Règle</translation>
    </message>
    <message>
        <source>ImageToPath</source>
        <translation>Image en tracé</translation>
    </message>
    <message>
        <source>Hide all layers except current</source>
        <translation>Masquer tous les calques sauf le calque courant</translation>
    </message>
    <message>
        <source>Merge with upper</source>
        <translation>Fusionner avec le calque supérieur</translation>
    </message>
    <message>
        <source>Set effect thumbnail</source>
        <translation>Définir la vignette de l&apos;effet</translation>
    </message>
    <message>
        <source>Open default thumbnail</source>
        <translation>Ouvrir la vignette par défaut</translation>
    </message>
    <message>
        <source>Colors</source>
        <translation>Couleurs</translation>
    </message>
    <message>
        <source>Colors panel</source>
        <translation>Panneau des couleurs</translation>
    </message>
    <message>
        <source>Effects</source>
        <translation>Effets</translation>
    </message>
    <message>
        <source>Effects panel</source>
        <translation>Panneau des effets</translation>
    </message>
    <message>
        <source>Brushes</source>
        <translation>Brosses</translation>
    </message>
    <message>
        <source>Brushes panel</source>
        <translation>Panneau des brosses</translation>
    </message>
    <message>
        <source>Brush settings</source>
        <translation>Réglages de la brosse</translation>
    </message>
    <message>
        <source>Brush settings panel</source>
        <translation>Panneau des réglages de la brosse</translation>
    </message>
    <message>
        <source>Palettes</source>
        <translation>Palettes</translation>
    </message>
    <message>
        <source>Color palettes panel</source>
        <translation>Panneau des palettes de couleurs</translation>
    </message>
    <message>
        <source>Undo/redo panel</source>
        <translation>Panneau d&apos;historique</translation>
    </message>
    <message>
        <source>Layer</source>
        <translation>Calque</translation>
    </message>
    <message>
        <source>Layer thumbnail panel</source>
        <translation>Panneau de vignette du calque</translation>
    </message>
    <message>
        <source>Main tool bar</source>
        <translation>Barre d&apos;outils principale</translation>
    </message>
    <message>
        <source>Tools toolbar</source>
        <translation>Barre d&apos;outils</translation>
    </message>
    <message>
        <source>Brushes toolbar</source>
        <translation>Barre des brosses</translation>
    </message>
    <message>
        <source>Selection toolbar</source>
        <translation>Barre de sélection</translation>
    </message>
    <message>
        <source>Shapes toolbar</source>
        <translation>Barre des formes</translation>
    </message>
    <message>
        <source>Grid toolbar</source>
        <translation>Barre de grille</translation>
    </message>
    <message>
        <source>Symmetry toolbar</source>
        <translation>Barre de symétrie</translation>
    </message>
    <message>
        <source>Text toolbar</source>
        <translation>Barre de texte</translation>
    </message>
    <message>
        <source>Line toolbar</source>
        <translation>Barre de ligne</translation>
    </message>
    <message>
        <source>Image toolbar</source>
        <translation>Barre d&apos;image</translation>
    </message>
    <message>
        <source>Perspective toolbar</source>
        <translation>Barre de perspective</translation>
    </message>
    <message>
        <source>Fill toolbar</source>
        <translation>Barre de remplissage</translation>
    </message>
    <message>
        <source>Fill selection toolbar</source>
        <translation>Barre de remplissage de sélection</translation>
    </message>
    <message>
        <source>Layer toolbar</source>
        <translation>Barre des calques</translation>
    </message>
    <message>
        <source>Gradient toolbar</source>
        <translation>Barre de dégradé</translation>
    </message>
    <message>
        <source>Comic strip toolbar</source>
        <translation>Barre de bande dessinée</translation>
    </message>
    <message>
        <source>Ruller toolbar</source>
        <translation>Barre de règle</translation>
    </message>
    <message>
        <source>Recent files</source>
        <translation>Fichiers récents</translation>
    </message>
    <message>
        <source>Panels</source>
        <translation>Panneaux</translation>
    </message>
    <message>
        <source>Tool bars</source>
        <translation>Barres d&apos;outils</translation>
    </message>
    <message>
        <source>Layer visibility</source>
        <translation>Visibilité des calques</translation>
    </message>
    <message>
        <source>Thumbnail</source>
        <translation>Vignette</translation>
    </message>
    <message>
        <source>Effects development</source>
        <translation>Développement des effets</translation>
    </message>
    <message>
        <source>Select brush</source>
        <translation>Choisir une brosse</translation>
    </message>
    <message>
        <source>Brush engine</source>
        <translation>Moteur de brosse</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Fichier</translation>
    </message>
    <message>
        <source>Edit</source>
        <translation>Édition</translation>
    </message>
    <message>
        <source>Layers</source>
        <translation>Calques</translation>
    </message>
    <message>
        <source>Tools</source>
        <translation>Outils</translation>
    </message>
    <message>
        <source>Window</source>
        <translation>Fenêtre</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Aide</translation>
    </message>
    <message>
        <source>Description:</source>
        <translation>Description :</translation>
    </message>
    <message>
        <source>new brush</source>
        <translation>nouvelle brosse</translation>
    </message>
    <message>
        <source>An error occured while saving the file.</source>
        <translation>Une erreur est survenue pendant l&apos;enregistrement du fichier.</translation>
    </message>
    <message>
        <source>Do you want to delete the brush &quot;%1&quot;?</source>
        <translation>Voulez-vous supprimer la brosse « %1 » ?</translation>
    </message>
    <message>
        <source>%1 copy</source>
        <translation>copie de %1</translation>
    </message>
    <message>
        <source>Brush files (*.qmb)</source>
        <translation>Fichiers de brosse (*.qmb)</translation>
    </message>
    <message>
        <source>Unable to import the brush file %1.</source>
        <translation>Impossible d&apos;importer le fichier de brosse %1.</translation>
    </message>
    <message>
        <source>Do you want to replace the brush &quot;%1&quot; by the one installed with the program?</source>
        <translation>Voulez-vous remplacer la brosse « %1 » par celle installée avec le programme ?</translation>
    </message>
    <message>
        <source>An error occured while loading the file.</source>
        <translation>Une erreur est survenue pendant le chargement du fichier.</translation>
    </message>
    <message>
        <source>Cannot write %1.</source>
        <translation>Impossible d&apos;écrire %1.</translation>
    </message>
    <message>
        <source>Do you want to remove the brush &quot;%1&quot; from the system directory? It stays yours in the user directory.</source>
        <translation>Voulez-vous retirer la brosse « %1 » du dossier système ? Elle reste la vôtre dans le dossier utilisateur.</translation>
    </message>
    <message>
        <source>Cannot remove %1.</source>
        <translation>Impossible de supprimer %1.</translation>
    </message>
    <message>
        <source>Effect</source>
        <translation>Effet</translation>
    </message>
    <message>
        <source>Do you want to delete &quot;%1&quot;?</source>
        <translation>Voulez-vous supprimer « %1 » ?</translation>
    </message>
    <message>
        <source>Effect files (*.qsh)</source>
        <translation>Fichiers d&apos;effet (*.qsh)</translation>
    </message>
    <message>
        <source>Unable to import the effect file %1.</source>
        <translation>Impossible d&apos;importer le fichier d&apos;effet %1.</translation>
    </message>
</context>
<context>
    <name>MPathVarList</name>
    <message>
        <source>Documents path</source>
        <translation>Dossier des documents</translation>
    </message>
    <message>
        <source>Images path</source>
        <translation>Dossier des images</translation>
    </message>
    <message>
        <source>Installation path</source>
        <translation>Dossier d&apos;installation</translation>
    </message>
</context>
<context>
    <name>MQuickFill</name>
    <message>
        <source>Fill</source>
        <translation>Remplissage</translation>
    </message>
</context>
<context>
    <name>MSettings</name>
    <message>
        <source>User</source>
        <translation>Utilisateur</translation>
    </message>
    <message>
        <source>Document</source>
        <translation>Document</translation>
    </message>
    <message>
        <source>Grid</source>
        <translation>Grille</translation>
    </message>
    <message>
        <source>Display</source>
        <translation>Affichage</translation>
    </message>
    <message>
        <source>Editor</source>
        <translation>Éditeur</translation>
    </message>
    <message>
        <source>Shortcuts</source>
        <translation>Raccourcis</translation>
    </message>
    <message>
        <source>Save layout</source>
        <translation>Enregistrer la disposition</translation>
    </message>
    <message>
        <source>User language</source>
        <translation>Langue de l&apos;utilisateur</translation>
    </message>
    <message>
        <source>Translate composition modes</source>
        <translation>Traduire les modes de composition</translation>
    </message>
    <message>
        <source>Show instructions</source>
        <translation>Afficher les instructions</translation>
    </message>
    <message>
        <source>Texts duration</source>
        <translation>Durée des textes</translation>
    </message>
    <message>
        <source>OpenGL SDK documentation url</source>
        <translation>Adresse de la documentation OpenGL</translation>
    </message>
    <message>
        <source>Color history length</source>
        <translation>Longueur de l&apos;historique des couleurs</translation>
    </message>
    <message>
        <source>Palette swatch size</source>
        <translation>Taille des pastilles de palette</translation>
    </message>
    <message>
        <source>Control point size</source>
        <translation>Taille des points de contrôle</translation>
    </message>
    <message>
        <source>Default width</source>
        <translation>Largeur par défaut</translation>
    </message>
    <message>
        <source>Default height</source>
        <translation>Hauteur par défaut</translation>
    </message>
    <message>
        <source>Paper type</source>
        <translation>Type de papier</translation>
    </message>
    <message>
        <source>Paper color</source>
        <translation>Couleur du papier</translation>
    </message>
    <message>
        <source>Paper name</source>
        <translation>Nom du papier</translation>
    </message>
    <message>
        <source>Show empty paper background</source>
        <translation>Afficher le fond de papier vide</translation>
    </message>
    <message>
        <source>Resolution unit</source>
        <translation>Unité de résolution</translation>
    </message>
    <message>
        <source>Undo/redo limit (8 to 64)</source>
        <translation>Limite d&apos;annulation (8 à 64)</translation>
    </message>
    <message>
        <source>Auto extent document</source>
        <translation>Étendre le document automatiquement</translation>
    </message>
    <message>
        <source>Paint margin</source>
        <translation>Marge de peinture</translation>
    </message>
    <message>
        <source>Document background color</source>
        <translation>Couleur de fond du document</translation>
    </message>
    <message>
        <source>Grid size</source>
        <translation>Taille de la grille</translation>
    </message>
    <message>
        <source>Show grid</source>
        <translation>Afficher la grille</translation>
    </message>
    <message>
        <source>Grid color</source>
        <translation>Couleur de la grille</translation>
    </message>
    <message>
        <source>Align to grid</source>
        <translation>Aligner sur la grille</translation>
    </message>
    <message>
        <source>Align to grid size</source>
        <translation>Pas d&apos;alignement sur la grille</translation>
    </message>
    <message>
        <source>Smooth pixels</source>
        <translation>Lisser les pixels</translation>
    </message>
    <message>
        <source>Smooth until zoom reaches X</source>
        <translation>Lisser jusqu&apos;au zoom X</translation>
    </message>
    <message>
        <source>Show thumbnails</source>
        <translation>Afficher les vignettes</translation>
    </message>
    <message>
        <source>Show thumbnails names only</source>
        <translation>N&apos;afficher que les noms des vignettes</translation>
    </message>
    <message>
        <source>Thumbnail size</source>
        <translation>Taille des vignettes</translation>
    </message>
    <message>
        <source>Thumbnail opacity</source>
        <translation>Opacité des vignettes</translation>
    </message>
    <message>
        <source>Thumbnail color</source>
        <translation>Couleur des vignettes</translation>
    </message>
    <message>
        <source>Thumbnail selection color</source>
        <translation>Couleur de sélection des vignettes</translation>
    </message>
    <message>
        <source>Thumbnail position</source>
        <translation>Position des vignettes</translation>
    </message>
    <message>
        <source>Show tiling</source>
        <translation>Afficher les tuiles</translation>
    </message>
    <message>
        <source>Tab size</source>
        <translation>Taille des tabulations</translation>
    </message>
    <message>
        <source>Font name</source>
        <translation>Police</translation>
    </message>
    <message>
        <source>Font size</source>
        <translation>Taille de police</translation>
    </message>
    <message>
        <source>Smart tab</source>
        <translation>Tabulation intelligente</translation>
    </message>
</context>
<context>
    <name>MShader</name>
    <message>
        <source>Errors during parameters compilation:</source>
        <translation>Erreurs à la compilation des paramètres :</translation>
    </message>
    <message>
        <source>Warning: texture file doesn&apos;t exits: </source>
        <translation>Attention : le fichier de texture n&apos;existe pas : </translation>
    </message>
    <message>
        <source>Errors during options compilation:</source>
        <translation>Erreurs à la compilation des options :</translation>
    </message>
</context>
<context>
    <name>MShaderWidget</name>
    <message>
        <source>All</source>
        <translation>Tous</translation>
    </message>
    <message>
        <source>Effects</source>
        <translation>Effets</translation>
    </message>
    <message>
        <source>Brush engines</source>
        <translation>Moteurs de brosse</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Rechercher</translation>
    </message>
</context>
<context>
    <name>MSymmetryTool</name>
    <message>
        <source>Sym. number</source>
        <translation>Nb. sym.</translation>
    </message>
    <message>
        <source>Lock</source>
        <translation>Verrouiller</translation>
    </message>
    <message>
        <source>Lock control points</source>
        <translation>Verrouiller les points de contrôle</translation>
    </message>
</context>
<context>
    <name>MTool</name>
    <message>
        <source>Layer</source>
        <translation>Calque</translation>
    </message>
    <message>
        <source>Can&apos;t draw: layer is locked or canvas is empty</source>
        <translation>Dessin impossible : le calque est verrouillé ou le canevas est vide</translation>
    </message>
</context>
<context>
    <name>MToolValues</name>
    <message>
        <source>Text</source>
        <translation>Texte</translation>
    </message>
</context>
<context>
    <name>MTools</name>
    <message>
        <source>Brush tool</source>
        <translation>Outil pinceau</translation>
    </message>
    <message>
        <source>Selection tool</source>
        <translation>Outil de sélection</translation>
    </message>
    <message>
        <source>Line tool</source>
        <translation>Outil ligne</translation>
    </message>
    <message>
        <source>Fill tool</source>
        <translation>Outil de remplissage</translation>
    </message>
    <message>
        <source>Fill selection tool</source>
        <translation>Outil de sélection par remplissage</translation>
    </message>
    <message>
        <source>Shape tool</source>
        <translation>Outil forme</translation>
    </message>
    <message>
        <source>Text tool</source>
        <translation>Outil texte</translation>
    </message>
    <message>
        <source>Image tool</source>
        <translation>Outil image</translation>
    </message>
    <message>
        <source>Gradient tool</source>
        <translation>Outil dégradé</translation>
    </message>
    <message>
        <source>Pan tool</source>
        <translation>Outil main</translation>
    </message>
    <message>
        <source>Rotate tool</source>
        <translation>Outil rotation</translation>
    </message>
    <message>
        <source>Zoom tool</source>
        <translation>Outil zoom</translation>
    </message>
    <message>
        <source>Grid tool</source>
        <translation>Outil grille</translation>
    </message>
    <message>
        <source>Perspective tool</source>
        <translation>Outil perspective</translation>
    </message>
    <message>
        <source>Symmetry tool</source>
        <translation>Outil symétrie</translation>
    </message>
    <message>
        <source>Comic strip tool</source>
        <translation>Outil bande dessinée</translation>
    </message>
    <message>
        <source>Ruller tool</source>
        <translation>Outil règle</translation>
    </message>
</context>
<context>
    <name>MWidget</name>
    <message>
        <source>the current layer is hidden</source>
        <translation>le calque courant est masqué</translation>
    </message>
    <message>
        <source>the canvas is empty</source>
        <translation>le canevas est vide</translation>
    </message>
    <message>
        <source>the current layer is locked</source>
        <translation>le calque courant est verrouillé</translation>
    </message>
    <message>
        <source>selection is active</source>
        <translation>la sélection est active</translation>
    </message>
    <message>
        <source>brush is in eraser mode</source>
        <translation>le pinceau est en mode gomme</translation>
    </message>
</context>
</TS>
