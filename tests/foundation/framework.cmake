# For each operation of the framework, compiles the library's door to it against a framework in
# which that one operation goes by another name. (tests/framework has these operations and no other:
# what the library uses and the door does not ask for fails there.)
set(operations
  AddLevel AppendBoolPar AppendDataPar AppendRecordPar AppendSInt64Par AppendSIntPar
  AppendUInt64Par AppendUIntPar Create DeletePar FormatString GetBool GetData GetFirstPar
  GetParCount GetRecord GetSInt GetSInt64 GetSize GetType GetUInt GetUInt64 IsEmpty IsValid
  SeekNextPar ToString2 _Trace addByte2CRC16 cMsg cRecordPath cUnit createCRC16 eLEVEL eOUTPUT
  iLevel initCRC16)

# What the framework includes of the standard library, compiled once.
file(WRITE ${SCRATCH}/standard.h
  "#include <atomic>\n#include <functional>\n#include <memory>\n#include <string>\n")
set(command ${COMPILER} -std=c++17 -I${ROOT})
execute_process(COMMAND ${command} -x c++-header ${SCRATCH}/standard.h -o ${SCRATCH}/standard.h.gch
                COMMAND_ERROR_IS_FATAL ANY)

function(compile operation result_var output_var)
  set(header ${SCRATCH}/framework_without.h)
  file(WRITE ${header}
    "#define ${operation} Other${operation}\n#include \"vorn/vorn.h\"\n#undef ${operation}\n")
  execute_process(
    COMMAND ${command} -fsyntax-only -include ${SCRATCH}/standard.h
            -DQUARN_FRAMEWORK_HEADER=\"${header}\" -x c++ ${ROOT}/quarn/foundation/framework.h
    RESULT_VARIABLE result ERROR_VARIABLE output)
  set(${result_var} ${result} PARENT_SCOPE)
  set(${output_var} "${output}" PARENT_SCOPE)
endfunction()

compile(NothingAtAll result output)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "a complete framework is refused:\n${output}")
endif()
foreach(operation IN LISTS operations)
  compile(${operation} result output)
  if(result EQUAL 0)
    message(SEND_ERROR "without ${operation}: not noticed")
  elseif(NOT output MATCHES "error: [^\n]*[^A-Za-z]${operation}[^A-Za-z]")
    message(SEND_ERROR "without ${operation}: not named in\n${output}")
  endif()
endforeach()
