#!/usr/bin/env python3
"""The job inside LibreOffice: a Basic macro that finds, highlights and stores, run headless.

    with_libreoffice.py find|highlight BEGIN END FILE…

Prints the blocks found, the seconds the macro itself took, and the processor's seconds without those of a start.
"""

import html
import os
import resource
import subprocess
import sys
import tempfile

MACRO = '''Sub Work(files As String, change As Boolean, beginText As String, endText As String, result As String)
  Dim started As Double, count As Long, path
  started = GetSystemTicks()
  For Each path In Split(files, "|")
    count = count + One(path, change, beginText, endText)
  Next
  Dim handle As Integer
  handle = FreeFile()
  Open result For Output As #handle
  Print #handle, count & " " & (GetSystemTicks() - started) / 1000
  Close #handle
End Sub

Function One(path, change As Boolean, beginText As String, endText As String) As Long
  Dim hidden(0) As New com.sun.star.beans.PropertyValue
  hidden(0).Name = "Hidden"
  hidden(0).Value = True
  Dim document As Object, wanted As Object, ending As Object, first As Object, last As Object, block As Object
  document = StarDesktop.loadComponentFromURL(ConvertToURL(path), "_blank", 0, hidden())
  wanted = document.createSearchDescriptor()
  wanted.SearchString = beginText
  ending = document.createSearchDescriptor()
  ending.SearchString = endText
  first = document.findFirst(wanted)
  Do While Not IsNull(first)
    last = document.findNext(first.getEnd(), ending)
    If IsNull(last) Then Exit Do
    One = One + 1
    If change Then
      block = first.getText().createTextCursorByRange(first.getStart())
      block.gotoRange(last.getEnd(), True)
      block.CharBackColor = RGB(255, 255, 0)
    End If
    first = document.findNext(last.getEnd(), wanted)
  Loop
  If change Then document.store()
  document.close(True)
End Function
'''


def main():
    operation, begin, end, files = sys.argv[1], sys.argv[2], sys.argv[3], sys.argv[4:]
    with tempfile.TemporaryDirectory() as home:
        office = ["soffice", "--headless", "--norestore", "-env:UserInstallation=file://" + home]
        # Its first start lays out the profile; a module put there before is not seen.
        subprocess.run([*office, "--terminate_after_init"], check=True, timeout=300, stderr=subprocess.DEVNULL)
        basic = os.path.join(home, "user/basic/Standard")
        with open(os.path.join(basic, "Module1.xba"), "w", encoding="utf-8") as file:
            file.write(
                '<?xml version="1.0" encoding="UTF-8"?><!DOCTYPE script:module PUBLIC "-//OpenOffice.org//DTD '
                'OfficeDocument 1.0//EN" "module.dtd"><script:module xmlns:script="http://openoffice.org/2000/script" '
                'script:name="Module1" script:language="StarBasic">%s</script:module>' % html.escape(MACRO))
        result = os.path.join(home, "result")

        def processor_of(paths):
            """The processor's seconds of a start that works on so many files."""
            arguments = ",".join((
                '"%s"' % "|".join(os.path.abspath(path) for path in paths), "True" if operation == "highlight" else "False",
                '"%s"' % begin, '"%s"' % end, '"%s"' % result))
            before = resource.getrusage(resource.RUSAGE_CHILDREN)
            subprocess.run([*office, "macro:///Standard.Module1.Work(%s)" % arguments], check=True, timeout=1800,
                           stderr=subprocess.DEVNULL)
            after = resource.getrusage(resource.RUSAGE_CHILDREN)
            return after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime

        start = processor_of([])
        processor = processor_of(files) - start
        with open(result, encoding="utf-8") as file:
            print(file.read().strip(), "%.2f" % processor)


if __name__ == "__main__":
    main()
