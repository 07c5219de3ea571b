' A script as a host of the component: makes an installation in a folder, calls every method of every class, a few
' of them with arguments that do not fit, and lets one scheduled backup run to its end.
'
'   cscript //nologo client.vbs FOLDER ENGINE
'
' FOLDER is made afresh; ENGINE is the transfer engine. The last line counts the checks and the failures.

Option Explicit
On Error Resume Next

Const kTypeMismatch = 13
Const kWrongNumberOfArguments = 450
Const kOverflow = 6
Const kSubscriptOutOfRange = 9

Dim fso, home, install, data, user, docs, checks, failures
Set fso = CreateObject("Scripting.FileSystemObject")
home = WScript.Arguments(0)
install = home & "\Program\"
data = home & "\Data\"
user = data & "Onduraann\"
docs = home & "\Docs\"

Sub Check(what, is_true)
  checks = checks + 1
  If is_true Then Exit Sub
  failures = failures + 1
  WScript.Echo "FAILED " & what
End Sub

Sub Equal(what, value, wanted)
  Check what & ": '" & value & "' in place of '" & wanted & "'", CStr(value) = CStr(wanted)
End Sub

' The statement before this one went well.
Sub Good(what)
  Dim number
  number = Err.Number
  Err.Clear
  Check what & " fails with " & number, number = 0
End Sub

' The statement before this one ended with this error.
Sub Bad(what, wanted)
  Dim number
  number = Err.Number
  Err.Clear
  Check what & " ends with " & number & " in place of " & wanted, number = wanted
End Sub

' An installation.

Sub WriteText(path, text, is_unicode)
  Dim stream
  Set stream = fso.CreateTextFile(path, True, is_unicode)
  stream.Write text
  stream.Close
End Sub

Function ReadText(path, is_unicode)
  Dim stream
  ReadText = "<none>"
  If Not fso.FileExists(path) Then Exit Function
  Set stream = fso.OpenTextFile(path, 1, False, is_unicode)
  ReadText = stream.ReadAll
  stream.Close
End Function

Function Shifted(text)
  Dim i
  For i = 1 To Len(text)
    Shifted = Shifted & Chr(Asc(Mid(text, i, 1)) + 2)
  Next
End Function

Function Paired(text)
  Dim i
  For i = 1 To Len(text)
    Paired = Paired & Chr(Asc(Mid(text, i, 1)) + 2) & Chr(Asc(Mid(text, i, 1)) + 3)
  Next
End Function

Function Setting(key, value)
  Setting = Paired(key) & "=" & Paired(value) & vbCrLf
End Function

Sub MakeInstallation(engine)
  If fso.FolderExists(home) Then fso.DeleteFolder home, True
  fso.CreateFolder home
  fso.CreateFolder install
  fso.CreateFolder data
  fso.CreateFolder user
  fso.CreateFolder docs
  fso.CopyFile engine, install & "ScrClsClient.exe"
  WriteText install & "UserName.ini", "[Registry]" & vbCrLf & "VirtualPath=" & data & vbCrLf, False
  WriteText data & "Configuration.ini", "[ProductInfo]" & vbCrLf & Setting("ProductNumber", "3") & _
      Setting("ProductName", "Ondura") & Setting("ProductInstallationName", "Ondura") & _
      Setting("ExeGroup", "Scr") & Setting("ProductCaption", "Ondura Backup") & _
      Setting("Language", "English"), False
  WriteText data & "UserName.ini", "[Registry]" & vbCrLf & Shifted("Default User name") & "=" & Shifted("ann") & _
      vbCrLf & "Default User name=" & Shifted("ann") & vbCrLf & "StandbyBackup=0" & vbCrLf & "[Tolmera]" & _
      vbCrLf & "Standard=0" & vbCrLf & "Started=0" & vbCrLf, False
  WriteText data & "userlist.ini", "ann;" & vbCrLf, False
  WriteText docs & "a.txt", "hello", False
  WriteText docs & "b.txt", "world", False
  WriteText user & "atbkupfolderlist.txt", docs & vbCrLf, True
End Sub

' Every method.

Dim controller, scheduler, transfer, options, state, dummy, codec, moment, number, text, list, stream
number = 1

Sub MakeObjects
  Set controller = CreateObject("OnduraEService.Controller") : Good "Controller"
  Set scheduler = CreateObject("OnduraEService.Scheduler") : Good "Scheduler"
  Set transfer = CreateObject("OnduraEService.Transfer") : Good "Transfer"
  Set options = CreateObject("OnduraEService.Options") : Good "Options"
  Set state = CreateObject("OnduraEService.clsSystemState") : Good "clsSystemState"
  Set dummy = CreateObject("OnduraEService.CDummyCall") : Good "CDummyCall"
  Set codec = CreateObject("OnduraEService.cBase64") : Good "cBase64"
  Set moment = CreateObject("OnduraEService.time") : Good "time"
End Sub

Sub CallCodec
  On Error Resume Next
  Equal "encode", codec.encode("hello"), "aGVsbG8="
  codec.encode codec : Bad "encode", kTypeMismatch
  Equal "Decode", codec.Decode("aGVsbG8="), "hello"
  Equal "EncodedMessage", codec.EncodedMessage, "aGVsbG8="
  codec.EncodedMessage 1 : Bad "EncodedMessage", kWrongNumberOfArguments
  Equal "DecodedMessage", codec.DecodedMessage, "hello"
  Equal "RShiftByte", codec.RShiftByte(200, 3), 25
  Equal "Power2", codec.Power2(31), 2147483648
  codec.Power2 "x" : Bad "Power2", kTypeMismatch
  codec.Power2 32 : Bad "Power2 behind its table", kOverflow
End Sub

Sub CallTransfer
  On Error Resume Next
  transfer.Trf_WriteUserProfile "password", "secret"
  transfer.Trf_WriteUserProfile "serverip", "localhost"
  transfer.Trf_WriteUserProfile "port", 11905
  transfer.Trf_WriteUserProfile "username", "ann" : Good "Trf_WriteUserProfile"
  text = "username"
  Equal "Trf_ReadUserProfile", transfer.Trf_ReadUserProfile(text), "ann"
  transfer.Trf_WriteUserProfileDefault "Proxy", Shifted("Proxyset"), Shifted("1") : Good "Trf_WriteUserProfileDefault"
  Equal "Trf_ReadProxyProfile", transfer.Trf_ReadProxyProfile("Proxyset"), "1"
  transfer.Trf_WriteUserProfileDefault "Tolmera", "encpasswordnew", codec.encode("key")
  Equal "Trf_ReadUserProfileNew", transfer.Trf_ReadUserProfileNew("encpasswordnew"), "key"
  transfer.Trf_WriteUserNameProfile "Interactive", "ann" : Good "Trf_WriteUserNameProfile"
  Equal "Trf_ReadUserNameProfile", transfer.Trf_ReadUserNameProfile("Interactive"), "ann"
  transfer.Trf_WriteUserNameRegistryProfile "StandbyBackup", 0 : Good "Trf_WriteUserNameRegistryProfile"
  Equal "Trf_ReadUserNameProfileReg", transfer.Trf_ReadUserNameProfileReg("StandbyBackup"), "0"
  transfer.Trf_WriteUserNameDBProfile "DB", "0" : Good "Trf_WriteUserNameDBProfile"
  Equal "Trf_ReadUserNameDBProfile", transfer.Trf_ReadUserNameDBProfile("DB"), "0"
  Equal "Trf_ReadPluginUserProfile", transfer.Trf_ReadPluginUserProfile("none"), ""
  Equal "Trf_ReadServerValues", transfer.Trf_ReadServerValues("none"), -1
  Equal "Trf_ReadOutputValue", transfer.Trf_ReadOutputValue("BackupStatus", "none"), -10
  transfer.setLindex : Good "setLindex"
End Sub

Sub CallScheduler
  On Error Resume Next
  Equal "Sch_SortBuildDate", scheduler.Sch_SortBuildDate("11-14-2026 9:05:00"), "202611140905"
  Equal "Sch_Load_ScheduleData", scheduler.Sch_Load_ScheduleData, 0
  Equal "ValidateAddDay", scheduler.ValidateAddDay("no date"), "no date"
  scheduler.sch_changefiledata "0" : Good "sch_changefiledata"
  scheduler.sch_CheckRepeatAppend : Good "sch_CheckRepeatAppend"
  scheduler.Sch_addhour_list : Good "Sch_addhour_list"
  scheduler.Sch_addDay_list : Good "Sch_addDay_list"
  scheduler.Sch_addweekDay_list : Good "Sch_addweekDay_list"
  scheduler.Sch_addweekEnd_list : Good "Sch_addweekEnd_list"
  scheduler.Sch_addWeek_list : Good "Sch_addWeek_list"
  scheduler.Sch_addMonth_list : Good "Sch_addMonth_list"
  text = scheduler.ConvertToDate("11-14-2026 9:05:00") : Good "ConvertToDate"
  text = scheduler.ConvertToTime("11-14-2026 9:05:00") : Good "ConvertToTime"
End Sub

Sub CallOptions
  On Error Resume Next
  options.WriteTrace "a line" : Good "WriteTrace"
  options.WriteTraceMain "a line" : Good "WriteTraceMain"
  options.WriteTraceFile "a line" : Good "WriteTraceFile"
  options.WriteTraceService "a line" : Good "WriteTraceService"
  options.Writeintofile home & "\written.txt", "a line" : Good "Writeintofile"
  Equal "Writeintofile", ReadText(home & "\written.txt", False), "a line" & vbLf
End Sub

Sub CallDummyCall
  On Error Resume Next
  Equal "DoDummycall", dummy.DoDummycall("ScrClsClient.exe"), 402
  dummy.CreateTempFolder "ann", "x" : Good "CDummyCall.CreateTempFolder"
  Check "CDummyCall.GetTempFolderPath", fso.FolderExists(dummy.GetTempFolderPath)
  WriteText dummy.GetTempFolderPath & "\DLLOutputInfo.txt", "-7" & vbCrLf & "no way" & vbCrLf, False
  dummy.ResdDLLOutputFile list, number, text : Good "CDummyCall.ResdDLLOutputFile"
  Equal "CDummyCall.ResdDLLOutputFile", number & text & list, "-7no way" & False
  dummy.DeleteInputOutFilesInTempFd : Good "CDummyCall.DeleteInputOutFilesInTempFd"
  dummy.DeleteTempFolder : Good "CDummyCall.DeleteTempFolder"
  Check "CDummyCall.DeleteTempFolder", Not fso.FolderExists(dummy.GetTempFolderPath)
End Sub

Sub StartController
  On Error Resume Next
  controller.cont_InitialSch_Backgrnd install : Good "cont_InitialSch_Backgrnd"
  controller.cont_InitialSch install : Good "cont_InitialSch"
  Check "const_InitUserdata", IsEmpty(controller.const_InitUserdata("ann"))
  controller.CopyDefaults "ben" : Good "CopyDefaults"
  Check "Cont_login", IsEmpty(controller.Cont_login)
  controller.SetProductNames : Good "SetProductNames"
  Equal "ReadConfigurationValue", controller.ReadConfigurationValue("ProductInfo", "ExeGroup"), "Scr"
End Sub

' Nothing is due yet, and the account has no encryption password.
Sub CallPasses
  On Error Resume Next
  Check "Cont_startschBackup", IsEmpty(controller.Cont_startschBackup)
  Check "Cont_CheckStandardRunning", IsEmpty(controller.Cont_CheckStandardRunning)
  transfer.Trf_WriteUserProfileDefault "Tolmera", "encpasswordnew", codec.encode("NOENC")
  controller.Cont_SchBackup number : Good "Cont_SchBackup"
  Equal "Cont_SchBackup", number, 4
  Check "Closeupoperation", IsEmpty(controller.Closeupoperation)
  Check "cont_RestartRealtimeSystem", IsEmpty(controller.cont_RestartRealtimeSystem)
  controller.CallDummy : Good "CallDummy"
  controller.Cont_LaunchAdminProcess : Good "Cont_LaunchAdminProcess"
  controller.Cont_LaunchAdminProcessSQL : Good "Cont_LaunchAdminProcessSQL"
  controller.Cont_LaunchSQlAdminProcess : Good "Cont_LaunchSQlAdminProcess"
  controller.CloseVSS : Good "CloseVSS"
  controller.CheckAndCloseVSS : Good "CheckAndCloseVSS"
End Sub

Sub CallExchange
  On Error Resume Next
  controller.WriteExchangeBackupSet "first group" : Good "WriteExchangeBackupSet"
  Equal "FindStorageGroupCount", controller.FindStorageGroupCount, 0
  controller.WriteExchBrickProfile "Path", "C:\x" : Good "WriteExchBrickProfile"
  Equal "ReadFirstBit", controller.ReadFirstBit(data & "userlist.ini"), "ann;"
  controller.CheckForExchBrickCancel 1 : Good "CheckForExchBrickCancel"
  Equal "Trf_ReadExchangeProfile", transfer.Trf_ReadExchangeProfile("Tolmera", "Path", user & "OxExchBrick.ini"), "C:\x"
End Sub

Sub CallSystemState
  On Error Resume Next
  state.CreatePIDFile "123", 1 : Good "CreatePIDFile"
  Equal "GetPID", state.GetPID(1), "123"
  state.DeletePIDFile 1 : Good "DeletePIDFile"
  Equal "GetPID behind DeletePIDFile", state.GetPID(1), ""
  Equal "StringEndFolder", state.StringEndFolder("a\b\c", "\"), "c"
  Equal "ShellClose", state.ShellClose(0), False
  Check "GetCompName", Len(state.GetCompName) > 0
  text = state.GetOsVersion : Good "GetOsVersion"
  text = "as before"
  Equal "GetLogErrorString", state.GetLogErrorString("no such job", text), ""
  Equal "the path of a log that is not there", text, "as before"
  Equal "CheckLogError", state.CheckLogError("", install & "none.log"), False
  Equal "QueryValueEx", state.QueryValueEx(&H80000002, "Software\None", "None", text), 2
  state.LaunchNtbackup state : Bad "LaunchNtbackup", kTypeMismatch
End Sub

Sub CallSelection
  On Error Resume Next
  controller.DB_ReadBackdataNew data & "userlist.ini", list : Good "DB_ReadBackdataNew"
  Equal "DB_ReadBackdataNew", list(0), "ann;"
  list = Array("C:\a", "c:\A\b", "D:\x")
  controller.RemoveDuplicate list : Good "RemoveDuplicate"
  Equal "RemoveDuplicate", UBound(list) & list(0) & list(1), "1C:\aD:\x"
  Check "HasBackupSelection", controller.HasBackupSelection
  Equal "bCheckDate", VarType(controller.bCheckDate), vbBoolean
  Equal "CheckLDBStatus", controller.CheckLDBStatus, 0
  controller.DeleteLDBFiles "ann" : Good "DeleteLDBFiles"
  controller.VaccumDB : Good "VaccumDB"
  Equal "IsScanInProgress", controller.IsScanInProgress, False
  Equal "IsmutexInProgress", controller.IsmutexInProgress("a mutex of nobody", False), False
End Sub

Sub CallEngineFiles
  On Error Resume Next
  controller.CreateTempFolder "ann", "y" : Good "CreateTempFolder"
  Check "GetTempFolderPath", fso.FolderExists(controller.GetTempFolderPath)
  controller.WriteDLLInputFileTempFd 1, 2, "host", "80", "ann", "pw", "rnd" : Good "WriteDLLInputFileTempFd"
  WriteText controller.GetTempFolderPath & "\DLLOutput.txt", "402" & vbCrLf, False
  controller.ResdDLLOutputFileTempFd text, number : Good "ResdDLLOutputFileTempFd"
  Equal "ResdDLLOutputFileTempFd", text & number, True & "402"
  controller.ResdDLLOutputFile text, number : Good "ResdDLLOutputFile"
  Equal "ResdDLLOutputFile of no file", text & number, False & "402"
  controller.DeleteInputOutFilesInTempFd : Good "DeleteInputOutFilesInTempFd"
  controller.DeleteTempFolder : Good "DeleteTempFolder"
  controller.ReadScheduleStatusFile text : Good "ReadScheduleStatusFile"
  Equal "ReadScheduleStatusFile", text, False
  controller.CallIPPORTCheckFull : Good "CallIPPORTCheckFull"
  controller.Trf_WritePORTNumbers 2 : Good "Trf_WritePORTNumbers"
  Set stream = fso.CreateTextFile(home & "\general.txt", True, True)
  controller.WriteGeneralMessage stream : Good "WriteGeneralMessage"
  stream.Close
  Check "WriteGeneralMessage", InStr(ReadText(home & "\general.txt", True), "Listed are the file(s)") > 0
  controller.WriteGeneralMessage codec : Bad "WriteGeneralMessage on another object", kTypeMismatch
End Sub

Sub CallHelpers
  On Error Resume Next
  Equal "ReadProfilefromRegistry", controller.ReadProfilefromRegistry("none"), ""
  Equal "ReadProfilefromRegistryWithoutDeCrypt", controller.ReadProfilefromRegistryWithoutDeCrypt("none"), ""
  Equal "ReadRandomNumFromRegistry", controller.ReadRandomNumFromRegistry("none"), ""
  controller.ResetBackupProgressIni : Good "ResetBackupProgressIni"
  Equal "EndProgress", controller.EndProgress, True
  Equal "GetProperSizeValue", controller.GetProperSizeValue(123456), "120.5 KB"
  Equal "TrimSpaceFromPathOne", controller.TrimSpaceFromPathOne("C:\a \b"), "C:\a\b"
  number = 0
  Equal "ProcessTerminate", controller.ProcessTerminate(number, 0), False
  text = "x"
  controller.ProcessTerminate text, 0 : Bad "ProcessTerminate", kTypeMismatch
  Equal "WhatsMyProcessID", controller.WhatsMyProcessID(-1), 0
  Equal "IsVista", VarType(controller.IsVista), vbBoolean
  Check "GetLocaleString", InStr(controller.GetLocaleString(31), "yy") > 0
  Equal "GetSystemTime", Len(controller.GetSystemTime), Len("11-14-2026 12-30-00")
  Equal "CheckForWriteAccessPermission", controller.CheckForWriteAccessPermission(home), True
  Equal "GetIPFromHostName", controller.GetIPFromHostName("localhost"), "127.0.0.1"
  text = controller.GetHostNameFromIP("127.0.0.1") : Good "GetHostNameFromIP"
End Sub

Dim noon
noon = DateSerial(2026, 11, 14) + TimeSerial(12, 0, 0)

Sub CallLogExtracts
  On Error Resume Next
  WriteText home & "\log.txt", "a b" & vbCrLf & "Backed up Files : 3" & vbCrLf & "end", True
  controller.MailSubject = "" : Good "MailSubject"
  Equal "ReadLinesfromtracefiles", controller.ReadLinesfromtracefiles(home & "\log.txt"), _
      "a%20b" & vbCrLf & "Backed%20up%20Files%20%3A%203" & vbCrLf & "end" & vbCrLf
  Equal "ReadLinesfromtracefilesWithoutLogExtract", _
      controller.ReadLinesfromtracefilesWithoutLogExtract(home & "\log.txt"), "Backed%20up%20Files%20%3A%203" & vbCrLf
  controller.AppendLogAttach " a line " : Good "AppendLogAttach"
  Equal "AppendLogAttach", ReadText(data & "Ondura\TmpLogAttach.txt", True), "a line" & vbCrLf
  controller.AppendFileData home & "\data.txt", "more" : Good "AppendFileData"
  Equal "AppendFileData", ReadText(home & "\data.txt", True), "more" & vbCrLf
  Equal "TimeDiffString", controller.TimeDiffString(noon, noon + TimeSerial(1, 2, 3)), _
      " 1 hour, 2 minutes and 3 seconds"
  Equal "URLEncodeWebd", controller.URLEncodeWebd("a/b c"), "a/b%20c"
  list = controller.UTF8_Encode("a b") : Good "UTF8_Encode"
  Equal "UTF8_Encode", UBound(list) & " " & list(0) & " " & list(1), "2 97 32"
  Check "UTF8_Encode of nothing", IsEmpty(controller.UTF8_Encode(""))
End Sub

' No notification host answers.
Sub CallMail
  On Error Resume Next
  WriteText install & "Deployment.ini", "[Deployment]" & vbCrLf & "NotificationHost=127.0.0.1" & vbCrLf, False
  controller.ScheduleMailDetail = "1"
  controller.ShortDateFormat = "M/d/yyyy"
  controller.SessionLogPath = home & "\log.txt"
  controller.JobStatusText = "Done."
  controller.ScheduledTime = noon
  controller.StageWord = " SQL Server "
  controller.FailureReason = "none" : Good "the values of a mail"
  controller.ScheduledTime = "soon" : Bad "ScheduledTime", kTypeMismatch
  Equal "the values of a mail", controller.ScheduleMailDetail & controller.ShortDateFormat & _
      controller.SessionLogPath & controller.JobStatusText & CDbl(controller.ScheduledTime) & _
      controller.StageWord & controller.FailureReason, _
      "1M/d/yyyy" & home & "\log.txt" & "Done." & CDbl(noon) & " SQL Server none"
  controller.SendMail "ann@example.com", "", 2 : Good "SendMail"
  Check "MailSubject: " & controller.MailSubject, InStr(controller.MailSubject, "[ann]") > 0
  controller.ScheduledTimeText = "12:30"
  controller.ScheduleTimeField = "12:31" : Good "the times of a notice"
  Equal "the times of a notice", controller.ScheduledTimeText & controller.ScheduleTimeField, "12:3012:31"
  controller.SendMailNew "ann@example.com", "a notice" : Good "SendMailNew"
End Sub

Sub CallSizes
  On Error Resume Next
  controller.CalculateTotalSize : Good "CalculateTotalSize"
  Equal "CalculateTotalSize", ReadText(user & "TotalDisplaySize.txt", True), "10" & vbCrLf & "2" & vbCrLf
  Equal "CheckServiceModeMappedDrive", controller.CheckServiceModeMappedDrive, False
  Equal "ReadProfilefromRegistryUNCCountSch", controller.ReadProfilefromRegistryUNCCountSch, ""
  controller.ReadProfilefromRegistryUNCSch : Good "ReadProfilefromRegistryUNCSch"
  Equal "UNCCount", controller.UNCCount, 0
  transfer.Trf_WriteUserNameRegistryProfile "UNCCount", "1"
  transfer.Trf_WriteUserNameRegistryProfile "UNC1", "a;\\server\share;c;d;e;f"
  controller.ReadUNCListfromRegistryProfile : Good "ReadUNCListfromRegistryProfile"
  Equal "UNCCount", controller.UNCCount, 1
  Equal "UNCPath", controller.UNCPath(0, 1), "\\server\share" : Good "UNCPath"
  text = controller.UNCPath(1, 0) : Bad "UNCPath behind its rows", kSubscriptOutOfRange
End Sub

' One backup of two files, due now.

Function Fixed(moment_of_day)
  Fixed = Right("0" & Month(moment_of_day), 2) & "-" & Right("0" & Day(moment_of_day), 2) & "-" & _
      Year(moment_of_day) & " " & Hour(moment_of_day) & ":" & _
      Right("0" & Minute(moment_of_day), 2) & ":00"
End Function

Function RecordLine(due)
  Dim field
  For Each field In Array("1", "Nightly", due, "now", "0", "every day", "", "0", "0", _
                          scheduler.Sch_SortBuildDate(due), "6", "1111111")
    RecordLine = RecordLine & field & Chr(8) & Chr(8)
  Next
  RecordLine = Left(RecordLine, Len(RecordLine) - 2) & vbCrLf
End Function

Function LatestLog
  Dim file
  LatestLog = "<none>"
  For Each file In fso.GetFolder(user & "Session").Files
    If InStr(file.Name, "Scheduled") = 1 Then LatestLog = ReadText(file.Path, True)
  Next
End Function

Sub RunScheduledJob
  Dim due, ticks
  If fso.FolderExists(user & "Session") Then fso.DeleteFolder user & "Session", True
  controller.cont_InitialSch install
  transfer.Trf_WriteUserNameProfile "Standard", "0"
  transfer.Trf_WriteUserProfileDefault "Tolmera", "encpasswordnew", codec.encode("key")
  due = Now
  WriteText user & "scheduleData.txt", "0" & vbCrLf & RecordLine(Fixed(due)), False
  For ticks = 1 To 3
    controller.Cont_CheckStandardRunning
    If transfer.Trf_ReadOutputValue("BackupStatus", "Status") = 4 Then Exit For
  Next
  Equal "copied a.txt", ReadText(data & "Vault\ann\" & Replace(docs, ":", "") & "a.txt", False), "hello"
  Equal "copied b.txt", ReadText(data & "Vault\ann\" & Replace(docs, ":", "") & "b.txt", False), "world"
  Equal "result of the engine", transfer.Trf_ReadOutputValue("BackupStatus", "RetValue"), 402
  Equal "status", transfer.Trf_ReadOutputValue("BackupStatus", "Status"), 4
  Equal "text of the status", ReadText(user & "SchStatus.txt", True), _
      "View the log to know the status of the backup job." & vbCrLf
  Check "session log: " & LatestLog, InStr(LatestLog, "Username: ann") > 0
  Equal "next occurrence", ReadText(user & "scheduleData.txt", False), "0" & vbCrLf & RecordLine(Fixed(due + 1))
End Sub

MakeInstallation WScript.Arguments(1)
MakeObjects
StartController
CallSizes
CallCodec
CallTransfer
CallScheduler
CallOptions
CallHelpers
CallSelection
CallEngineFiles
CallSystemState
CallExchange
CallLogExtracts
CallMail
CallDummyCall
CallPasses
RunScheduledJob
WScript.Echo checks & " checks, " & failures + 0 & " failures"
