<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>DBrushSettings</name>
    <message>
        <source>Save</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Brush settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Prefered settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Engine parameters</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Load brush texture</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reset brush texture</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Export brush texture</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Category</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>no texture</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>width: %1 - height: %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> - engine: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Brush texture</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>An error occured while loading the file.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Invalid image.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The image background seems to be opaque. Do you want a transparent background? If no texure color will be preserved.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reset texture</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This brush has no texture.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Are you sure you want to remove brush texture?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save texture</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>An error occured while saving the file.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No texture to save!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>PNG image (*.png)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This file exists. Do you want to replace it?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Brush</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File saved.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The brush has been modified.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>If you do not save, the changes will be discarded at next application startup.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Keep changes but do not save</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Discard and close</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Don&apos;t close</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>DCurveEditor</name>
    <message>
        <source>Add curve</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove curve</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add point</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove point</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reset</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Invert x</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Invert y</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ok</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>x min</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>x max</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>y min</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>y max</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Modulo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Preset</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Formula</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Do you want to save modifications?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Dont&apos; save</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>DLayerEdit</name>
    <message>
        <source>Layer properties</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Opacity</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Visible</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Locked</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Mask</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ok</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>DSettings</name>
    <message>
        <source>Settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ok</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>English</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>French</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>edit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Search</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Description</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Shortcut</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Edit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Edit the shortcut.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reset</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reset the shortcut to the default shortcut.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reset all</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reset all the shortcuts to the default shortcuts.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copy</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copy the table to clipboard, paste it in something like excel and print it to get a shortcut list sheet.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The shortcut %1 already exists for action &apos;%2&apos;. Do you want to replace it?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clear</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>DShaderParams</name>
    <message>
        <source>Effect settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Preview</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Apply</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Apply the effect to layer. You can remove the effect later.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>DSortList</name>
    <message>
        <source>Sort brush list</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&gt;&gt;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&lt;&lt;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move up</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move down</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move at top</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move at bottom</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ok</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>system</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>user</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>DTextureParam</name>
    <message>
        <source>Texture shader parameter</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Browse for the texture file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Insert a path variable</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Var name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Min filter</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Mag filter</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Wrap s</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Wrap t</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ok</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The variable name must begin with a letter or &quot;_&quot; and hold only letters, digits and &quot;_&quot;.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&quot;%1&quot; is a word of the parameter language and can&apos;t name a texture.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Names beginning with &quot;gl_&quot; are reserved by OpenGL.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file name can&apos;t hold both single and double quotes.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file name must be on one line.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Texture file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Images (*.png *.jpg *.jpeg *.bmp *.tif *.tiff *.webp);;All files (*)</source>
        <translation type="unfinished"></translation>
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
        <translation>Colored</translation>
    </message>
    <message>
        <source>Paper</source>
        <translation>Paper</translation>
    </message>
    <message>
        <source>PixelsPerInch</source>
        <translation>Pixels per inch</translation>
    </message>
    <message>
        <source>PixelsPerCentimeter</source>
        <translation>Pixels per centimetre</translation>
    </message>
    <message>
        <source>LeftEdge</source>
        <translation>Left edge</translation>
    </message>
    <message>
        <source>TopEdge</source>
        <translation>Top edge</translation>
    </message>
    <message>
        <source>RightEdge</source>
        <translation>Right edge</translation>
    </message>
    <message>
        <source>BottomEdge</source>
        <translation>Bottom edge</translation>
    </message>
    <message>
        <source>EllipseShape</source>
        <translation>Ellipse shape</translation>
    </message>
    <message>
        <source>RectangleShape</source>
        <translation>Rectangle shape</translation>
    </message>
    <message>
        <source>ConstantAngle</source>
        <translation>Constant angle</translation>
    </message>
    <message>
        <source>FollowDirectionAngle</source>
        <translation>Follow direction angle</translation>
    </message>
    <message>
        <source>AutoSpacing</source>
        <translation>Auto spacing</translation>
    </message>
    <message>
        <source>RatioSpacing</source>
        <translation>Ratio spacing</translation>
    </message>
    <message>
        <source>ConstantSpacing</source>
        <translation>Constant spacing</translation>
    </message>
    <message>
        <source>Antialiasing</source>
        <translation>Antialiasing</translation>
    </message>
    <message>
        <source>NoAntialiasing</source>
        <translation>No antialiasing</translation>
    </message>
    <message>
        <source>Smoothing</source>
        <translation>Smoothing</translation>
    </message>
    <message>
        <source>NoMask</source>
        <translation>No mask</translation>
    </message>
    <message>
        <source>AlphaMask</source>
        <translation>Alpha mask</translation>
    </message>
    <message>
        <source>OneMinusAlphaMask</source>
        <translation>One minus alpha mask</translation>
    </message>
</context>
<context>
    <name>MApplication</name>
    <message>
        <source>translation loaded...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can&apos;t run Quillmere: your graphic card driver is not supported.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>effects loaded: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>brushes loaded: %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MBrush</name>
    <message>
        <source>New brush</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MBrushInputInfoList</name>
    <message>
        <source>Pressure</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stylus pressure</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tangential pressure</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stylus tangential pressure</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>X tilt</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Y tilt</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Position x</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Position y</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Direction x</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Direction y</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Speed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Time to previous</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Time elapsed between two inputs of a stroke (ms)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Total time</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Time elapsed since the start of a stroke (ms)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Distance to previous</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Distance travelled by the stylus or mouse between two inputs of a stroke (px)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Total distance</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Distance travelled by the stylus or mouse since the start of stroke (px)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Random number</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Random number generated at each stamp (between 0 and 1)</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MBrushListWidget</name>
    <message>
        <source>Edit settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reset settings</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MBrushTool</name>
    <message>
        <source>Follow path</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Symmetry brush stroke: %1, %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Brush radius: %1 px.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MCanvas</name>
    <message>
        <source>new document %1.%2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove layers</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Set canvas size: %1, %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Duplicate layer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Merge layer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Apply effect %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Paste an image</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Append an image</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Layer %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Append a layer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fill tile with color</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Layer down</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Layer up</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Prepend a layer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove layer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Resize painted rectangle: %1, %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Layer property change</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Update tile</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fill tile</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Brush stroke</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Draw line</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MColorEdit</name>
    <message>
        <source>Choose a color</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MEndStrokeRunner</name>
    <message>
        <source>Brush stroke: %1, %2</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MFieldPanel</name>
    <message>
        <source>Edit dynamic settings</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MFileNameEdit</name>
    <message>
        <source>Images (*.png *.jpg *.jpeg *.bmp *.tif *.tiff *.webp);;All files (*)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Browse for a file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose a file</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MFileUtility</name>
    <message>
        <source>%1 files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>All files (*.*)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>WaveFront object files (*.obj)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Black &amp; White</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Encapsulated Postscript</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Encapsulated PostScript Interchange</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>OpenEXR</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>PC Paintbrush Exchange</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Photoshop Document</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Raw red, green, and blue samples</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Raw red, green, blue, and alpha samples</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Irix RGB</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Truevision Targa</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>eXperimental Computing Facility (GIMP)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>DirectDraw Surface</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Khoros Visualization</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Windows Bitmap</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Graphic Interchange Format</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Joint Photographic Experts Group</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Joint Photographic Experts Group 2000</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Multiple-image Network Graphics</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Portable Network Graphics</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Portable Bitmap</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Portable Graymap</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Portable Pixmap</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tagged Image File Format</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>X11 Bitmap</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>X11 Pixmap</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Icon Image</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Scalable Vector Graphics</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Wireless Application Protocol Bitmap</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>WebP</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>All image files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>First %1 execution.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is configuring installation, please wait.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Processing %3: file %1 of %2 </source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MFillCanvasRunner</name>
    <message>
        <source>Clear</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MLayer</name>
    <message>
        <source>Layer</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MMainWindow</name>
    <message>
        <source>&lt;empty&gt;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>new-document</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 - </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Modified</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Do you want to save modifications?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Dont&apos; save</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File Error</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Error saving to the file: file name is empty</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot save file %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot open file %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Import image file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Some changes take effect after a restart. Restart now?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Paste</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>About Quillmere</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&lt;h3&gt;Quillmere %1&lt;/h3&gt;&lt;p&gt;A painting program for a stylus or a mouse, where every pixel lives on the graphics card and brushes and effects are programs you can write.&lt;/p&gt;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open file...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save file as...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>New file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Exit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reset canvas position</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Adjust to width</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Adjust to height</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>View all canvas</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Window transparency (on/off)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Increase window transparency</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Decrease window transparency</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Undo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Redo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Export as image</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Edit effect</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Brush</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Selection</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Color picker</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Shape</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Text</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Symmetry</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Grid</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Line</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Image</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fill selection</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stroke selection</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reset selection</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Invert selection</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reset brush settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sort brushes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lock brush control points</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add layer at top</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Edit layer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove layer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Duplicate layer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show/Hide layer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lock/Unlock layer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show all layers</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Hide all layers</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lock all layers</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unlock all layers</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Next layer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Previous layer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Merge with lower</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move up</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move down</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add a layer at bottom</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove empty layers</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show/hide preview</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove preview</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copy</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cut</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Paste in new layer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Change paper</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Increase paper size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Decrease paper size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Adjust paper to selection</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Restore default layout</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Edit brush quick settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select all</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Next selection</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Previous selection</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Perspective</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Full screen</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Eraser mode</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fill</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Flip horizontal</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Flip vertical</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Help index</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Online help</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Contact us</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Check updates</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Print</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Properties</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Import image file...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>New effect</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Delete effect</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Duplicate effect</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Preview effect</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Apply effect</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Magic wand</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Gradient</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Restart application</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Increase brush radius</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Decrease brush radius</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Time line</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clear color history</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>New brush</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Delete brush</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Duplicate brush</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Edit brush settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Import brush file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Restore brush to system default</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copy brush to system directory</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove brush from system directory</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Rename brush</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Set brush engine</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reset brush engine</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>New brush engine</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Edit brush engine</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Duplicate brush engine</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Delete brush engine</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Texture generator</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Load brush texture</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Edit layer effect</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Generate help</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Rename effect</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Rename brush engine</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Import effect</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Color converter</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Comic strip</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pan</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Rotate</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Zoom</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ruler</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ImageToPath</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Hide all layers except current</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Merge with upper</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Set effect thumbnail</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open default thumbnail</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Colors</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Colors panel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Effects</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Effects panel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Brushes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Brushes panel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Brush settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Brush settings panel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Palettes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Color palettes panel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Undo/redo panel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Layer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Layer thumbnail panel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Main tool bar</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tools toolbar</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Brushes toolbar</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Selection toolbar</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Shapes toolbar</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Grid toolbar</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Symmetry toolbar</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Text toolbar</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Line toolbar</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Image toolbar</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Perspective toolbar</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fill toolbar</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fill selection toolbar</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Layer toolbar</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Gradient toolbar</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Comic strip toolbar</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ruller toolbar</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Recent files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Panels</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tool bars</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Layer visibility</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Thumbnail</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Effects development</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select brush</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Brush engine</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Edit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Layers</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tools</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Window</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Help</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Description:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>new brush</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>An error occured while saving the file.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Do you want to delete the brush &quot;%1&quot;?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 copy</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Brush files (*.qmb)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unable to import the brush file %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Do you want to replace the brush &quot;%1&quot; by the one installed with the program?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>An error occured while loading the file.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot write %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Do you want to remove the brush &quot;%1&quot; from the system directory? It stays yours in the user directory.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot remove %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Effect</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Do you want to delete &quot;%1&quot;?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Effect files (*.qsh)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unable to import the effect file %1.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MPathVarList</name>
    <message>
        <source>Documents path</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Images path</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Installation path</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MQuickFill</name>
    <message>
        <source>Fill</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MSettings</name>
    <message>
        <source>User</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Document</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Grid</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Display</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Editor</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Shortcuts</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save layout</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>User language</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Translate composition modes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show instructions</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Texts duration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>OpenGL SDK documentation url</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Color history length</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Palette swatch size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Control point size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Default width</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Default height</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Paper type</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Paper color</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Paper name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show empty paper background</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Resolution unit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Undo/redo limit (8 to 64)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Auto extent document</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Paint margin</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Document background color</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Grid size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show grid</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Grid color</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Align to grid</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Align to grid size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Smooth pixels</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Smooth until zoom reaches X</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show thumbnails</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show thumbnails names only</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Thumbnail size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Thumbnail opacity</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Thumbnail color</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Thumbnail selection color</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Thumbnail position</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show tiling</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tab size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Font name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Font size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Smart tab</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MShader</name>
    <message>
        <source>Errors during parameters compilation:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Warning: texture file doesn&apos;t exits: </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Errors during options compilation:</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MShaderWidget</name>
    <message>
        <source>All</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Effects</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Brush engines</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Search</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MSymmetryTool</name>
    <message>
        <source>Sym. number</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lock</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lock control points</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MTool</name>
    <message>
        <source>Layer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can&apos;t draw: layer is locked or canvas is empty</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MToolValues</name>
    <message>
        <source>Text</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MTools</name>
    <message>
        <source>Brush tool</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Selection tool</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Line tool</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fill tool</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fill selection tool</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Shape tool</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Text tool</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Image tool</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Gradient tool</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pan tool</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Rotate tool</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Zoom tool</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Grid tool</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Perspective tool</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Symmetry tool</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Comic strip tool</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ruller tool</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MWidget</name>
    <message>
        <source>the current layer is hidden</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the canvas is empty</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the current layer is locked</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>selection is active</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>brush is in eraser mode</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
