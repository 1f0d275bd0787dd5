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
        <source>fx</source>
        <translation>Effects</translation>
    </message>
</context>
</TS>
