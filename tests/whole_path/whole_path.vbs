' From a macro as Word's users have it to the changed document. The arguments: the folder of the user's
' program, the folder of what he does.
Option Explicit

Dim failures, word, control, shell, folder, users, steps, pluvo
failures = 0
Set shell = CreateObject("WScript.Shell")
users = WScript.Arguments(0)
steps = WScript.Arguments(1)
' Under Wine a zero follows it.
folder = Replace(shell.ExpandEnvironmentStrings("%TEMP%"), Chr(0), "") & "\pluvo_whole_path"

Sub Expect(what, actual, wanted)
  If actual = wanted Then Exit Sub
  failures = failures + 1
  WScript.Echo "FAILED " & what & ": " & actual & ", not " & wanted
End Sub

Sub ExpectIn(what, text, wanted)
  If InStr(text, wanted) > 0 Then Exit Sub
  failures = failures + 1
  WScript.Echo "FAILED " & what & ": there is no " & wanted
End Sub

Function Content(name)
  Content = control.ReadFile(folder & "\" & name)
End Function

' Opens the dialog before a user who does what a file says, and closes it.
Sub OpenDialog(name)
  Dim outcome, waited
  outcome = name & ".outcome"
  shell.Run """" & users & "\user.exe"" """ & steps & "\" & name & ".steps"" """ & folder & "\" & outcome & """", 1, False
  pluvo.OpenPLUVO
  Do While Content(outcome) = "" And waited < 1200
    control.Sleep 100
    waited = waited + 1
  Loop
  Expect "what the user did (" & name & ")", Replace(Content(outcome), vbCrLf, ""), "done"
End Sub

Sub OneDocument
  Dim document
  Set document = control.AddDocument("C:\Letters\one.doc", "A cat sat. The cat ran." & vbCr & "No Cat.")
  control.ClearLog
  OpenDialog "one_document"
  Expect "text", document.Range.Text, "A dog sat. The dog ran." & vbCr & "No dog." & vbCr
  Expect "undo", control.UndoRecords("one.doc") <> "", True
  ExpectIn "calls", control.Log, "put Find.Text(VT_BSTR ""cat"")"
  ExpectIn "calls", control.Log, "put Range.Text(VT_BSTR ""dog"")"
  ExpectIn "calls", control.Log, "call Document.Range(VT_I4 0, VT_I4 0)"
  ExpectIn "calls", control.Log, "put Find.Wrap(VT_I4 0)"
  document.Close False
End Sub

Sub Confirmed
  Dim document
  Set document = control.AddDocument("C:\Letters\two.doc", "one a two, one b two, one c two")
  OpenDialog "confirmed"
  Expect "highlights", control.Highlights("two.doc"), "7:11-20 7:22-31"
  Expect "undo of all in one", control.UndoRecords("two.doc"), "P.L.U.V.O." & vbCrLf
  document.Close False
End Sub

Sub ManyFiles
  control.WriteFile folder & "\first.doc", "one cat" & vbCr
  control.WriteFile folder & "\second.doc", "two cats, a cat" & vbCr
  control.WriteFile folder & "\third.txt", "cat" & vbCr
  control.WriteFile folder & "\fourth.doc", "a cat" & vbCr
  control.SetProtection folder & "\fourth.doc", 2, "key"
  control.Logging = False
  OpenDialog "many_files"
  control.Logging = True
  Expect "first", Content("first.doc"), "one dog" & vbCrLf
  Expect "second", Content("second.doc"), "two dogs, a dog" & vbCrLf
  Expect "third", Content("third.txt"), "cat" & vbCrLf
  Expect "fourth", Content("fourth.doc"), "a dog" & vbCrLf
  Expect "protected again", control.FileProtection(folder & "\fourth.doc"), 2
  Expect "open documents", word.Documents.Count, 0
End Sub

' An error that a part did not expect has ended it.
Sub Done(name)
  If Err.Number = 0 Then Exit Sub
  failures = failures + 1
  WScript.Echo "FAILED " & name & ": error " & Err.Number & " " & Err.Description
  Err.Clear
End Sub

On Error Resume Next
Set word = CreateObject("Word.Application")
Set control = CreateObject("PLUVO.StandIn")
control.Reset
control.DeleteFolder folder
' Care is taken, each document has a window that goes with it, and Word's own loop eats keys.
shell.RegWrite "HKCU\Software\PLUVO\Careful", 1, "REG_DWORD"
control.HasWindows = True
control.EatsKeys = True
control.WriteFile folder & "\PLUVO\readme.txt", "the data folder"
control.SetDefaultPath 2, folder
word.Visible = True
Set pluvo = CreateObject("PLUVO.clsOpenPLUVO")
Done "the objects"

OneDocument: Done "OneDocument"
Confirmed: Done "Confirmed"
ManyFiles: Done "ManyFiles"

Expect "errors reported", Content("PLUVO\errors.txt"), ""
shell.RegDelete "HKCU\Software\PLUVO\"
Set pluvo = Nothing
control.Reset
control.DeleteFolder folder
If failures = 0 Then WScript.Echo "all as wanted"
