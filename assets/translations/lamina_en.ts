<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" sourcelanguage="en" language="en">
<context>
    <name>Lamina</name>
    <message>
        <source>Home key</source>
        <translation>Home</translation>
    </message>
    <message>
        <source>brightness</source>
        <translation>Brightness</translation>
    </message>
    <message>
        <source>contrast</source>
        <translation>Contrast</translation>
    </message>
    <message>
        <source>fx</source>
        <translation>Effects</translation>
    </message>
    <message>
        <source>opacity</source>
        <translation>Opacity</translation>
    </message>
</context>
</TS>
