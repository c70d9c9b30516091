' The stand-in itself, from a script as Word's users write them.
Option Explicit

Dim failures, word, control
failures = 0

Sub Expect(what, actual, wanted)
  If actual = wanted Then Exit Sub
  failures = failures + 1
  WScript.Echo "FAILED " & what & ": " & actual & ", not " & wanted
End Sub

' The error that the last statement raised; Word's own as its number.
Sub ExpectError(what, number)
  Dim raised
  raised = Err.Number
  Err.Clear
  If raised < 0 And (raised And &HFFFF0000) = &H800A0000 Then raised = raised And &HFFFF&
  Expect what, raised, number
End Sub

Function Opened(text)
  control.Reset
  Set Opened = control.AddDocument("C:\Letters\one.txt", text)
End Function

Function Found(range, text)
  range.Find.ClearFormatting
  range.Find.Text = text
  If range.Find.Execute() Then Found = range.Start & "-" & range.End Else Found = "none"
End Function

Set word = CreateObject("Word.Application")
Set control = CreateObject("PLUVO.StandIn")

Sub Application
  Opened "one"
  Expect "the active document", word.ActiveDocument.Name, "one.txt"
  Expect "separator", word.PathSeparator, "\"
  control.SetDefaultPath 2, "C:\Mine"
  Expect "default path", word.Options.DefaultFilePath(2), "C:\Mine"
End Sub

Sub Ranges
  Dim document, whole, other, part
  Set document = Opened("The cat sat." & vbCrLf & "On the mat.")
  Set whole = document.Range
  Expect "text", whole.Text, "The cat sat." & vbCr & "On the mat." & vbCr
  Expect "length", whole.End, 25
  Expect "words", whole.Words.Count, 10
  Expect "sentences", whole.Sentences.Count, 2
  Expect "paragraphs", whole.Paragraphs.Count, 2
  Expect "characters", document.Range(0, 3).Characters.Count, 3
  Expect "no text in a collapsed range", document.Range(4, 4).Text, ""
  Expect "the selection's next character", word.Selection.Text, "T"

  Set part = document.Range(4, 7)
  Expect "moved", part.MoveEnd(1, 4), 4
  Expect "moved", part.Text, "cat sat"
  Expect "by words", part.MoveStart(2, 1), 1
  Expect "by words", part.Text, "sat"
  Expect "stops at the end", part.MoveEnd(1, 1000), 14
  part.Start = 20
  part.End = 5
  Expect "end before start", part.Start & "-" & part.End, "5-5"

  On Error Resume Next
  document.Range 0, 26
  ExpectError "beyond the end", 4608
  part.SetRange -1, 3
  ExpectError "before the start", 4608
  part.MoveEnd 5, 1
  ExpectError "by lines", 4120
  document.Range "a", 3
  ExpectError "a text for a position", 13
  part.SetRange "a", 3
  ExpectError "a text for a number", 13
  part.Start = Null
  ExpectError "nothing for a number", 13
  part.NoSuchMember
  ExpectError "no such member", 438
  part.SetRange 1
  ExpectError "too few arguments", 450
End Sub

Sub Edits
  Dim document, cat, ends, begins, same
  Set document = Opened("The cat sat.")
  Set cat = document.Range(4, 7)
  Set ends = document.Range(0, 4)
  Set begins = document.Range(7, 11)
  Set same = document.Range(4, 7)
  cat.InsertBefore "big "
  Expect "grows in front", cat.Text, "big cat"
  Expect "a range that begins there takes it", same.Text, "big cat"
  Expect "a range that ends there does not", ends.Text, "The "
  cat.InsertAfter "s"
  Expect "grows behind", cat.Text, "big cats"
  Expect "a range that ends there does not", same.Text, "big cat"
  Expect "a range that begins there takes it", begins.Text, "s sat"
  cat.Text = "dog"
  Expect "replaced", document.Range.Text, "The dog sat." & vbCr
  Expect "what is replaced leaves nothing of a range over it", same.Text, ""
  Expect "and is taken by the range behind it", begins.Text, "dog sat"
  cat.HighlightColorIndex = 7
  Expect "highlight", control.Highlights("one.txt"), "7:4-7"
  word.Options.SmartCutPaste = False
  Expect "deleted", cat.Delete, 1
  Expect "collapsed", cat.Start & "-" & cat.End, "4-4"
  Expect "an insertion point deletes what lies behind it", cat.Delete, 1
  Expect "deleted", document.Range.Text, "The sat." & vbCr
  word.Options.SmartCutPaste = True
  document.Range(4, 7).Delete
  Expect "deleted with the blank that would be left", document.Range.Text, "The." & vbCr
  document.Range.Delete
  Expect "the final mark stays", document.Range.Text, vbCr
  document.Range.InsertAfter "x" & vbCrLf & "y"
  Expect "line ends are marks", document.Range.Text, "x" & vbCr & "y" & vbCr
  Expect "unsaved", document.Saved, False

  On Error Resume Next
  cat.HighlightColorIndex = 17
  ExpectError "no such colour", 5843
End Sub

Sub Finds
  Dim document, curly, range
  curly = Chr(147) & "Yes" & Chr(148) & " isn" & Chr(146) & "t ""No"" 5^2 a" & Chr(160) & "b yes"
  Set document = Opened(curly & vbCrLf & "second")
  Expect "straight finds curly", Found(document.Range, """yes"""), "0-5"
  Expect "curly finds straight", Found(document.Range, Chr(147) & "no" & Chr(148)), "12-16"
  Expect "apostrophe", Found(document.Range, "isn't"), "6-11"
  Expect "a circumflex is doubled", Found(document.Range, "5^^2"), "17-20"
  Expect "a blank finds a hard one", Found(document.Range, "a b"), "21-24"
  Expect "paragraph mark", Found(document.Range, "yes^psec"), "25-32"
  Expect "digit", Found(document.Range, "^#"), "17-18"
  Expect "by number", Found(document.Range, "^u53^0094"), "17-19"
  Expect "none", Found(document.Range, "nowhere"), "none"
  Expect "no text", Found(document.Range, ""), "none"
  Set range = document.Range(0, 5)
  Expect "runs on behind its own match", Found(range, "yes"), "1-4"
  Expect "runs on behind its own match", Found(range, "yes"), "25-28"
  Expect "and ends", Found(range, "yes"), "none"
  Expect "stays", range.Start & "-" & range.End, "25-28"
  Expect "within itself", Found(document.Range(0, 10), "no"), "none"
  Expect "from a point to the end", Found(document.Range(6, 6), "yes"), "25-28"
  range.Find.MatchCase = True
  range.SetRange 0, 0
  Expect "case", Found(range, "yes"), "25-28"
  Set range = document.Range
  range.Find.MatchWholeWord = True
  Expect "whole word", Found(range, "se"), "none"
  range.Find.MatchWholeWord = False
  Expect "backwards", range.Find.Execute("yes", False, False, False, False, False, False), True
  Expect "backwards", range.Start, 25
  Expect "the selection stays", word.Selection.Start, 0

  On Error Resume Next
  range.Find.Text = String(255, "x")
  ExpectError "255 characters", 0
  range.Find.Text = String(256, "x")
  ExpectError "256 characters", 5854
  Found range, "a^q"
  ExpectError "unknown code", 5692
  range.Find.Execute 5
  ExpectError "a number for a text", 13
End Sub


Sub Views
  Dim document
  Set document = Opened("on " & Chr(19) & "DATE" & Chr(20) & "Monday" & Chr(21) & vbCr & "a" & Chr(7) & "b" & Chr(7) & Chr(7) & "end")
  Expect "field result", document.Range(0, 17).Text, "on Monday" & vbCr
  Expect "a find sees results", Found(document.Range, "date"), "none"
  document.ActiveWindow.View.ShowFieldCodes = True
  Expect "a find sees codes", Found(document.Range, "date"), "4-8"
  Expect "a find sees no results", Found(document.Range, "monday"), "none"
  document.ActiveWindow.View.ShowFieldCodes = False
  Expect "cell marks", document.Range(17, 22).Text, "a" & vbCr & Chr(7) & "b" & vbCr & Chr(7) & vbCr & Chr(7)
  Expect "no match leaves its cell", Found(document.Range, "b^?"), "none"
End Sub

Sub Files
  Dim document, number
  control.Reset
  control.AddFile "C:\Letters\two.doc", "two"
  control.SetPasswords "C:\Letters\two.doc", "key", ""
  On Error Resume Next
  word.Documents.Open "C:\Letters\none.doc"
  ExpectError "no such file", 5174
  word.Documents.Open "C:\Letters\two.doc"
  ExpectError "no password", 4198
  control.AnswerPassword "wrong"
  word.Documents.Open "C:\Letters\two.doc"
  ExpectError "wrong password", 5408
  word.ActiveDocument.Name
  ExpectError "no document", 4248
  control.AnswerPassword "key"
  Set document = word.Documents.Open("C:\Letters\two.doc")
  ExpectError "password", 0
  Expect "path", document.Path & "|" & document.Name & "|" & document.FullName, "C:\Letters|two.doc|C:\Letters\two.doc"
  Expect "count", word.Documents.Count & word.Documents(1).Name & word.Documents.Item("two.doc").Name, "1two.doctwo.doc"
  number = word.Documents(2).Name
  ExpectError "no such document", 5941
  document.Range(0, 0).InsertBefore "number "
  document.Close
  ExpectError "close asks", 4198
  document.Close True
  ExpectError "close saves", 0
  Expect "saved", control.FileText("c:\letters\TWO.doc"), "number two" & vbCr
  number = document.Name
  ExpectError "closed", 5825

  control.SetPasswords "C:\Letters\two.doc", "", ""
  control.SetReadOnly "C:\Letters\two.doc"
  Set document = word.Documents.Open("C:\Letters\two.doc")
  Expect "read-only", document.ReadOnly, True
  document.WritePassword = ""
  document.Close -1
  ExpectError "read-only", 5155
  control.AnswerSaveAs "C:\Letters\three.doc"
  document.Close -1
  Expect "saved under another name", control.FileText("C:\Letters\three.doc"), "number two" & vbCr
End Sub

Sub Protection
  Dim document
  Set document = Opened("form")
  Expect "none", document.ProtectionType, -1
  document.Protect 2, , "key"
  On Error Resume Next
  document.Range(0, 0).InsertAfter "x"
  ExpectError "protected text", 6124
  Found document.Range, "form"
  ExpectError "protected search", 4605
  document.Unprotect "Key"
  ExpectError "wrong password", 5485
  document.Protect 2
  ExpectError "protected already", 4605
  document.Unprotect "key"
  Expect "unprotected", document.ProtectionType, -1
  document.StoryRanges(1).Select
  Expect "all selected", word.Selection.End, 5
  document.StoryRanges(2).Select
  ExpectError "no such story", 5941
End Sub

Sub Refusals
  Dim document
  Set document = Opened("one")
  control.Refuse "Range.Text", 4605
  control.Refuse "put Range.Start", -2147418111, 2
  On Error Resume Next
  document.Range.Text = "x"
  ExpectError "refused", 4605
  Expect "only once", document.Range.Text, "one" & vbCr
  document.Range.Start = 1
  ExpectError "the first passes", 0
  document.Range.Start = 1
  ExpectError "busy", -2147418111
  control.ClearLog
  document.Range(0, 1).Text = "^"
  Expect "log", control.Log, "call Document.Range(VT_I2 0, VT_I2 1) -> VT_DISPATCH" & vbCrLf & "put Range.Text(VT_BSTR ""^"") -> VT_EMPTY" & vbCrLf
  control.Version = "12.0"
  word.UndoRecord.StartCustomRecord "x"
  ExpectError "older than undo records", 438
  control.Version = "16.0"
  word.UndoRecord.StartCustomRecord "PLUVO"
  word.UndoRecord.EndCustomRecord
  Expect "undo record", control.UndoRecords("one.txt"), "PLUVO" & vbCrLf
End Sub

Sub Leaks
  Dim before, document, i, find
  before = control.Alive()
  For i = 1 To 100
    Set document = Opened("one")
    Set find = document.Range(0, 1).Find
    find.Execute "one"
    find.Text = document.Range.Words.Count + document.Range.Paragraphs.Count
  Next
  Set find = Nothing
  Set document = Nothing
  Expect "objects left", control.Alive(), before
End Sub

' An error that a part did not expect has ended it.
Sub Done(name)
  If Err.Number = 0 Then Exit Sub
  failures = failures + 1
  WScript.Echo "FAILED " & name & ": error " & Err.Number & " " & Err.Description
  Err.Clear
End Sub

On Error Resume Next
Application: Done "Application"
Ranges: Done "Ranges"
Edits: Done "Edits"
Finds: Done "Finds"
Views: Done "Views"
Files: Done "Files"
Protection: Done "Protection"
Refusals: Done "Refusals"
Leaks: Done "Leaks"
control.Reset
If failures = 0 Then WScript.Echo "all as wanted"
